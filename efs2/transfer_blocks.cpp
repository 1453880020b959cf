// The blocks of a transfer: reading a phone file to its end, writing a source to its end.
#include <array>
#include <cstdint>
#include <cstdio>

#include "efs2/commands.h"
#include "efs2/exchange.h"
#include "efs2/local_files.h"
#include "efs2/transfer.h"

namespace {

constexpr size_t kReadBlock = 1536;
constexpr size_t kWriteBlock = 512;
constexpr size_t kReadHeader = 20;
constexpr size_t kWriteHeader = 12;
constexpr DWORD kNoCount = 0xFFFFFFFF;

using Kind = OperationFailure::Kind;

} // namespace

bool Efs2Transfer::ReadBlock(LONG iDescriptor, DWORD iOffset, std::span<unsigned char> area,
                             DWORD& iBytesRead) {
    Efs2Frame<kReadHeader + kReadBlock> frame(m_frame, EFS2_CMD_READ);
    frame.Request().S32(iDescriptor).U32(static_cast<DWORD>(area.size())).U32(iOffset);
    if (!frame.ExchangeUntilGranted(1, 16))
        return false;
    ResponseReader response = frame.Response();
    if (!response.U32At(12, iBytesRead) || iBytesRead > area.size() ||
        response.Size() < kReadHeader + iBytesRead || iBytesRead > UINT32_MAX - iOffset)
        return false;
    response.SetPosition(kReadHeader + iBytesRead);
    return response.Take(area.first(iBytesRead));
}

bool Efs2Transfer::EFS2ReadEntireFile(LONG iDescriptor, DWORD* piBytesRead, const char* sGivenLocalFile,
                                      const char* sLocalFile) {
    DownloadTarget target(sLocalFile);
    if (!target.IsOpen())
        return Fail({Kind::LocalNotWritten, target.ErrorNo()});
    std::array<unsigned char, kReadBlock> aBlock;
    DWORD iPosition = 0;
    DWORD iBytesRead = kReadBlock;
    while (iBytesRead == kReadBlock && !IsAborted()) {
        if (!ReadBlock(iDescriptor, iPosition, aBlock, iBytesRead))
            return false;
        if (!target.Append(std::span(aBlock).first(iBytesRead)))
            break;
        iPosition += iBytesRead;
        Report(sLocalFile, sGivenLocalFile, EFS2_CMD_READ, iPosition, iPosition);
        LogLine(m_frame, LOG_RET, " EFS Read Transferred %d", iPosition);
    }
    const bool bStored = target.Finish();
    if (IsAborted())
        std::remove(sLocalFile);
    else if (!bStored) {
        LogLine(m_frame, LOG_ERR, "QLIB_EfsRead() - Local file cannot be written: %s", sLocalFile);
        return Fail({Kind::LocalNotWritten, target.ErrorNo()});
    }
    if (piBytesRead != nullptr)
        *piBytesRead = iPosition;
    return true;
}

bool Efs2Transfer::WriteBlock(LONG iDescriptor, DWORD iOffset, std::span<const unsigned char> block) {
    while (!block.empty()) {
        Efs2Frame<20, kWriteHeader + kWriteBlock> frame(m_frame, EFS2_CMD_WRITE);
        frame.Request().S32(iDescriptor).U32(iOffset).Bytes(block);
        DWORD iWritten = kNoCount;
        const bool bWritten = frame.ExchangeUntil(kEfs2Attempts, [&](const ResponseReader& response) {
            DWORD iErrnum = 0;
            iWritten = kNoCount;
            response.U32At(12, iWritten);
            return response.U32At(16, iErrnum) && iErrnum == 0 && iWritten != 0 && iWritten <= block.size();
        });
        if (!bWritten)
            return false;
        iOffset += iWritten;
        block = block.subspan(iWritten);
    }
    return true;
}

bool Efs2Transfer::EFS2WriteEntireFile(LONG iDescriptor, UploadSource& source, const char* sEFS_File) {
    if (!source.Open())
        return Fail({Kind::LocalNotRead, source.ErrorNo()});
    std::array<unsigned char, kWriteBlock> aBlock;
    while (!IsAborted()) {
        const DWORD iOffset = source.Taken();
        const auto block = source.Next(aBlock);
        if (block.empty())
            break;
        if (!WriteBlock(iDescriptor, iOffset, block))
            return false;
        Report(source.Name(), sEFS_File, EFS2_CMD_WRITE, source.Taken(), source.Size());
        LogLine(m_frame, LOG_RET, " EFS Write Transferred %d / %d bytes", source.Taken(), source.Size());
        if (source.Taken() == source.Size())
            break;
    }
    if (IsAborted() || source.IsExhausted())
        return true;
    LogLine(m_frame, LOG_ERR, "QLIB_EfsWrite() - Local file ended early: %s", source.Name());
    return Fail({Kind::LocalNotRead, source.ErrorNo()});
}
