#include "efs2/block_exchanges.h"

#include <cstdint>

#include "diag/command.h"
#include "efs2/commands.h"
#include "efs2/exchange.h"

namespace {

constexpr size_t kReadHeader = 20;
constexpr size_t kWriteHeader = 12;

} // namespace

bool ReadOneBlock(CommandFrame& frame, LONG iDescriptor, DWORD iOffset, std::span<unsigned char> area,
                  DWORD& iBytesRead, DWORD& iErrorNo) {
    Efs2Frame<kReadHeader + kEfs2ReadBlock> exchange(frame, EFS2_CMD_READ);
    exchange.Request().S32(iDescriptor).U32(static_cast<DWORD>(area.size())).U32(iOffset);
    DWORD iVerdict = 0;
    if (!exchange.ExchangeForVerdict(1, 16, iVerdict))
        return false;
    if (iVerdict == 0) {
        ResponseReader response = exchange.Response();
        DWORD iRead = 0;
        if (!response.U32At(12, iRead) || iRead > area.size() || response.Size() < kReadHeader + iRead ||
            iRead > UINT32_MAX - iOffset)
            return false;
        response.SetPosition(kReadHeader + iRead);
        if (!response.Take(area.first(iRead)))
            return false;
        iBytesRead = iRead;
    }
    iErrorNo = iVerdict;
    return true;
}

bool WriteOneBlock(CommandFrame& frame, LONG iDescriptor, DWORD iOffset, std::span<const unsigned char> block,
                   DWORD& iBytesWritten, DWORD& iErrorNo) {
    Efs2Frame<20, kWriteHeader + kEfs2WriteBlock> exchange(frame, EFS2_CMD_WRITE);
    exchange.Request().S32(iDescriptor).U32(iOffset).Bytes(block);
    bool bAnswered = false;
    exchange.ExchangeUntil(kEfs2Attempts, [&](const ResponseReader& response) {
        DWORD iVerdict = 0;
        DWORD iWritten = 0;
        if (!response.U32At(16, iVerdict) || !response.U32At(12, iWritten))
            return false;
        const bool bGranted = iVerdict == 0;
        if (bGranted && (iWritten == 0 || iWritten > block.size()))
            return false;
        bAnswered = true;
        iErrorNo = iVerdict;
        if (bGranted)
            iBytesWritten = iWritten;
        return bGranted;
    });
    return bAnswered;
}
