#include "diag/memory.h"

#include <algorithm>
#include <array>
#include <span>

#include "diag/command.h"
#include "diag/command_codes.h"

namespace {

/// One access width: its codes, the size of a request's data area, its name in the log.
struct Width {
    unsigned char iPeek;
    unsigned char iPoke;
    size_t iArea;
    const char* sPeek;
    const char* sEquals;
    const char* sPoke;
    LogCategory ePokeCategory;
};

constexpr Width kWidth8 = {DIAG_PEEK_8, DIAG_POKE_8, 4, "8bit", "= ", "8bit", LOG_FN};
constexpr Width kWidth16 = {DIAG_PEEK_16, DIAG_POKE_16, 4, "16bit", "=", "16bit", LOG_RET};
constexpr Width kWidth32 = {DIAG_PEEK_32, DIAG_POKE_32, 8, "32bit", "= ", "32 bit", LOG_FN};

constexpr size_t kPeekedOffset = 7; // after code, address and count
constexpr std::array<unsigned char, 8> kPadding{};

const Width& WidthOf(unsigned char) {
    return kWidth8;
}
const Width& WidthOf(unsigned short) {
    return kWidth16;
}
const Width& WidthOf(DWORD) {
    return kWidth32;
}

/// Copies every complete value of the response.
template <class Value>
void CopyPeeked(CommandFrame& frame, std::span<Value> values) {
    const ResponseReader response = frame.Response();
    size_t iOffset = kPeekedOffset;
    for (Value& value : values) {
        DWORD iValue = 0;
        for (size_t i = 0; i < sizeof(Value); ++i) {
            unsigned char iByte = 0;
            if (!response.U8At(iOffset++, iByte))
                return;
            iValue |= static_cast<DWORD>(iByte) << (8 * i);
        }
        value = static_cast<Value>(iValue);
    }
}

template <class Value>
bool Peek(CommandFrame& frame, DWORD iAddress, unsigned short iNumItems, Value* pOut) {
    const Width& width = WidthOf(Value{});
    LogLine(frame, LOG_FN, "QLIB_DIAG_MEMORY_PEEK_F-%s(iAddress=0x%X, iNumItems=%d)", width.sPeek, iAddress,
            iNumItems);
    const size_t iCount = std::min<size_t>(iNumItems, width.iArea / sizeof(Value));
    frame.BeginRequest()
        .U8(width.iPeek)
        .U32(iAddress)
        .U16(static_cast<unsigned>(iCount))
        .EndHeader()
        .Bytes(std::span(kPadding).first(width.iArea));
    const bool bAnswered = iCount > 0 ? frame.SendForValues() : frame.Send(0);
    if (bAnswered)
        CopyPeeked(frame, std::span(pOut, iCount));
    LogLine(frame, LOG_RET, "QLIB_DIAG_MEMORY_PEEK_F-%s(iAddress=0x%X, iNumItems=%d) %s0x%X, OK = %d",
            width.sPeek, iAddress, static_cast<int>(iCount), width.sEquals, iCount > 0 ? pOut[0] : 0,
            bAnswered ? 1 : 0);
    return bAnswered;
}

template <class Value>
bool Poke(CommandFrame& frame, DWORD iAddress, unsigned short iNumItems, const Value* pData) {
    const Width& width = WidthOf(Value{});
    LogLine(frame, width.ePokeCategory, "QLIB_POKE-%s(iAddress=0x%X, iNumBytes=%d, data[0]=0x%X)",
            width.sPoke, iAddress, iNumItems, iNumItems > 0 ? pData[0] : 0);
    const size_t iCount = std::min<size_t>(iNumItems, width.iArea / sizeof(Value));
    RequestBuilder& request =
        frame.BeginRequest().U8(width.iPoke).U32(iAddress).U8(static_cast<unsigned>(iCount));
    for (const Value value : std::span(pData, iCount))
        for (size_t i = 0; i < sizeof(Value); ++i)
            request.U8(static_cast<unsigned>(value >> (8 * i)));
    request.Bytes(std::span(kPadding).first(width.iArea - iCount * sizeof(Value)));
    return frame.Send(0);
}

} // namespace

bool PhoneMemory::DIAG_MEMORY_PEEK_F(DWORD iAddress, unsigned short iNumItems, unsigned char* pOut) {
    return Peek(m_frame, iAddress, iNumItems, pOut);
}
bool PhoneMemory::DIAG_MEMORY_PEEK_F(DWORD iAddress, unsigned short iNumItems, unsigned short* pOut) {
    return Peek(m_frame, iAddress, iNumItems, pOut);
}
bool PhoneMemory::DIAG_MEMORY_PEEK_F(DWORD iAddress, unsigned short iNumItems, DWORD* pOut) {
    return Peek(m_frame, iAddress, iNumItems, pOut);
}

bool PhoneMemory::DIAG_MEMORY_POKE_F(DWORD iAddress, unsigned short iNumItems, const unsigned char* pData) {
    return Poke(m_frame, iAddress, iNumItems, pData);
}
bool PhoneMemory::DIAG_MEMORY_POKE_F(DWORD iAddress, unsigned short iNumItems, const unsigned short* pData) {
    return Poke(m_frame, iAddress, iNumItems, pData);
}
bool PhoneMemory::DIAG_MEMORY_POKE_F(DWORD iAddress, unsigned short iNumItems, const DWORD* pData) {
    return Poke(m_frame, iAddress, iNumItems, pData);
}
