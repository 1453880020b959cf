#include "link/prot_ahdlc.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <thread>
#include <utility>

#include "link/as_int.h"
#include "link/clock.h"
#include "link/serial_port.h"
#include "link/text_log.h"

namespace {

constexpr std::string_view kDiagModeCommand = "AT$QCDMG\r";
constexpr Milliseconds kDiagModeSettling(50);
constexpr size_t kDiagModeResponseSize = 20;

struct RateOfMask {
    unsigned char iMask;
    DWORD iRate;
};
constexpr RateOfMask kRates[] = {{0x01, 19200}, {0x04, 115200}};

} // namespace

CProtAHDLC::~CProtAHDLC() = default;

bool CProtAHDLC::SetPort(CSerialPort* pPort) {
    if (pPort == nullptr)
        return false;
    m_pPort = pPort;
    return true;
}

void CProtAHDLC::SetLogHandler(DataLogFileHandler* pLogHandler) {
    m_pLogHandler = pLogHandler;
    if (m_pPort != nullptr)
        m_pPort->SetLogHandler(pLogHandler);
}

int CProtAHDLC::SetStartFlag(unsigned char bStartFlag) {
    return std::exchange(m_bStartFlag, bStartFlag);
}

void CProtAHDLC::SetRawMode(int iMode) {
    m_iRawMode = iMode;
}

void CProtAHDLC::Log(unsigned int iCategory, const char* sText) {
    if (m_pLogHandler != nullptr)
        m_pLogHandler->LogMessage(iCategory, "%s", sText);
}

bool CProtAHDLC::Send(const unsigned char* pPacket, DWORD iSize, DWORD iTimeout,
                      unsigned char bForceStartFlag) {
    if (m_pLogHandler != nullptr)
        m_pLogHandler->LogMessage(LOG_FN_AHDLC, "CProtAHDLC::Send(iSize=%d, iTimeout=%d)", AsInt(iSize),
                                  AsInt(iTimeout));
    if (m_pPort == nullptr)
        return false;
    if (iSize >= kSendLimit) {
        Log(LOG_ERR_AHDLC, "Error. String size exceeds maximum buffer size.");
        return false;
    }
    if (m_iRawMode != 0)
        return WriteFrame({pPacket, iSize});
    EncodedFrame frame;
    if (!frame.Encode({pPacket, iSize}, m_bStartFlag != 0 || bForceStartFlag != 0)) {
        Log(LOG_ERR_AHDLC, "Error. String size exceeds maximum buffer size.");
        return false;
    }
    return WriteFrame(frame.Bytes());
}

bool CProtAHDLC::WriteFrame(std::span<const unsigned char> frame) {
    const auto iLength = static_cast<int>(frame.size());
    const bool bSent = m_pPort->Send(frame.data(), iLength) == iLength;
    if (m_pLogHandler != nullptr)
        m_pLogHandler->LogMessage(LOG_RET_AHDLC, "CProtAHDLC::Send(_iALen=%d) ... %s", iLength,
                                  bSent ? "OK" : "FAIL");
    return bSent;
}

bool CProtAHDLC::Receive(unsigned char* pBuffer, DWORD* piCount, DWORD iLimit_ms) {
    std::memset(pBuffer, 0xFF, *piCount);
    return ReceiveWaiting(pBuffer, piCount, iLimit_ms);
}

bool CProtAHDLC::ReceiveWaiting(unsigned char* pBuffer, DWORD* piCount, DWORD iLimit_ms) {
    const DWORD iWanted = *piCount;
    *piCount = 0;
    if (m_pPort == nullptr)
        return true;
    const auto start = Clock::now();
    *piCount = static_cast<DWORD>(m_pPort->Receive(pBuffer, static_cast<int>(iWanted)));
    if (Clock::now() - start <= Milliseconds(iLimit_ms))
        return true;
    Log(LOG_ERR_AHDLC, "Timeout error. Aborting.");
    return false;
}

bool CProtAHDLC::FlushPhoneBuffer() {
    Log(LOG_FN_AHDLC, "CProtAHDLC::FlushPhoneBuffer()");
    if (m_pPort != nullptr)
        m_pPort->Send(&kFrameFlag, 1);
    return true;
}

bool CProtAHDLC::Data2DM(unsigned char iBaudRateMask) {
    if (m_pLogHandler != nullptr)
        m_pLogHandler->LogMessage(LOG_FN_AHDLC, "CProtAHDLC::Data2DM(baudrate_mask=%d)", iBaudRateMask);
    if (m_pPort == nullptr)
        return false;
    const CallersTurn turn(m_reader);
    DWORD iFormerRate = 0;
    m_pPort->GetBaudRate(&iFormerRate);
    const bool bSwitched = std::any_of(std::begin(kRates), std::end(kRates), [&](const RateOfMask& entry) {
        return (iBaudRateMask & entry.iMask) != 0 && TryRate(entry.iRate);
    });
    m_pPort->SetBaudRate(iFormerRate);
    m_pPort->FlushPCBuffer();
    FlushPhoneBuffer();
    m_pPort->FlushPCBuffer();
    if (bSwitched)
        std::this_thread::sleep_for(kDiagModeSettling);
    return bSwitched;
}

bool CProtAHDLC::TryRate(DWORD iRate) {
    m_pPort->SetBaudRate(iRate);
    m_pPort->FlushPCBuffer();
    FlushPhoneBuffer();
    for (int i = 0; i < kDiagModeTries; ++i) {
        if (AskForDiagMode())
            return true;
    }
    return false;
}

bool CProtAHDLC::AskForDiagMode() {
    const auto iSize = static_cast<int>(kDiagModeCommand.size());
    if (m_pPort->Send(reinterpret_cast<const unsigned char*>(kDiagModeCommand.data()), iSize) != iSize)
        return false; // the request did not go out, so no reply will come
    const auto deadline = Clock::now() + Milliseconds(kDiagModeTry_ms);
    unsigned char aResponse[kDiagModeResponseSize];
    size_t iRead = 0;
    for (auto now = Clock::now(); now < deadline; now = Clock::now()) {
        iRead += static_cast<size_t>(
            m_pPort->Receive(aResponse + iRead, static_cast<int>(kDiagModeResponseSize - iRead)));
        if (std::find(aResponse, aResponse + iRead, 'K') != aResponse + iRead)
            return true;
        if (iRead < kDiagModeResponseSize)
            m_pPort->WaitForInput(
                static_cast<DWORD>(std::chrono::ceil<Milliseconds>(deadline - now).count()));
        else
            std::this_thread::sleep_until(deadline);
    }
    return false;
}
