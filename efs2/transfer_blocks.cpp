// The blocks of a transfer: reading a phone file to its end, writing a source to its end.
#include <array>
#include <cstdio>

#include "diag/command.h"
#include "efs2/block_exchanges.h"
#include "efs2/commands.h"
#include "efs2/local_files.h"
#include "efs2/transfer.h"

namespace {

using Kind = OperationFailure::Kind;

} // namespace

bool Efs2Transfer::ReadBlock(LONG iDescriptor, DWORD iOffset, std::span<unsigned char> area,
                             DWORD& iBytesRead) {
    DWORD iErrnum = 0;
    return ReadOneBlock(m_frame, iDescriptor, iOffset, area, iBytesRead, iErrnum) && iErrnum == 0;
}

bool Efs2Transfer::EFS2ReadEntireFile(LONG iDescriptor, DWORD* piBytesRead, const char* sGivenLocalFile,
                                      const char* sLocalFile) {
    DownloadTarget target(sLocalFile);
    if (!target.IsOpen())
        return Fail({Kind::LocalNotWritten, target.ErrorNo()});
    std::array<unsigned char, kEfs2ReadBlock> aBlock;
    DWORD iPosition = 0;
    DWORD iBytesRead = kEfs2ReadBlock;
    while (iBytesRead == kEfs2ReadBlock && !IsAborted()) {
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
        DWORD iWritten = 0;
        DWORD iErrnum = 0;
        if (!WriteOneBlock(m_frame, iDescriptor, iOffset, block, iWritten, iErrnum) || iErrnum != 0)
            return false;
        iOffset += iWritten;
        block = block.subspan(iWritten);
    }
    return true;
}

bool Efs2Transfer::EFS2WriteEntireFile(LONG iDescriptor, UploadSource& source, const char* sEFS_File) {
    if (!source.Open())
        return Fail({Kind::LocalNotRead, source.ErrorNo()});
    std::array<unsigned char, kEfs2WriteBlock> aBlock;
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
