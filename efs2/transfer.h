// Copying whole files between the computer and the phone.
#pragma once

#include <span>

#include "efs2/callbacks.h"
#include "efs2/metadata.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class UploadSource;

/// Efs2Transfer copies files block by block (1536 bytes from the phone, 512 to it), one exchange of up to
/// 2000 ms per block. Requests to open, close and write are sent up to five times. The transfer callback is
/// called after each block. Caller's thread. Frame, callbacks and metadata must outlive it.
///
/// True means that the copy is complete, or that EFS2_DIAG_ABORT ended it: the removal of the partial copy
/// was then requested, but not checked. The result does not distinguish the two cases; the caller must
/// remember its abort. A file of more than 4 GiB - 1 byte fails.
///
/// Phone paths have at most 243 characters. A local path is passed to the C library unchanged.
class QUILLET_API Efs2Transfer {
public:
    Efs2Transfer(CommandFrame& frame, Efs2Callbacks& callbacks, Efs2Metadata& metadata)
        : m_frame(frame), m_callbacks(callbacks), m_metadata(metadata) {}

    /// EFS2_DIAG_READ_FILE copies the phone file sEFS_File to sLocalFile, which is truncated first. Null or
    /// empty: the phone file's own name in the current directory; 1024 characters or more: refused. After a
    /// failure the partial local file stays. False also when the local disk is full.
    bool EFS2_DIAG_READ_FILE(const char* sLocalFile, const char* sEFS_File);

    /// EFS2_DIAG_WRITE_FILE copies a local file to the phone file sEFS_File, which is created or truncated.
    /// After a failure the bytes written so far stay there (see EFS2_LastWriteOpenedTarget). False also when
    /// the phone has too little space, and when the file has become shorter since the start.
    bool EFS2_DIAG_WRITE_FILE(const char* sLocalFile, const char* sEFS_File);

    /// EFS2_DIAG_WRITE_FILE_MEM writes iSize bytes of memory to the phone file sEFS_File.
    bool EFS2_DIAG_WRITE_FILE_MEM(const char* pLocalFile, DWORD iSize, const char* sEFS_File);

    /// EFS2_LastWriteOpenedTarget: whether the phone opened the file of the last write operation, which
    /// truncates it. When false, do not delete a file of that name: it is not the write's. Either the phone
    /// refused, or all five responses were lost and the file may have been truncated all the same.
    bool EFS2_LastWriteOpenedTarget() const { return m_bLastWriteOpenedTarget; }

private:
    bool PerformEFS2ReadOp(const char* sEFS_File, DWORD* piBytesRead, const char* sLocalFile);
    bool PerformEFS2WriteOp(const char* sEFS_File, UploadSource& source);
    bool EFS2FileOpen(const char* sEFS_File, LONG iOpenFlags, LONG iMode, LONG* piDescriptor);
    bool EFS2FileClose(LONG iDescriptor);
    bool EFS2ReadEntireFile(LONG iDescriptor, DWORD* piBytesRead, const char* sGivenLocalFile,
                            const char* sLocalFile);
    bool EFS2WriteEntireFile(LONG iDescriptor, UploadSource& source, const char* sEFS_File);

    /// Reads one block. False when no response arrived, when the phone refused, and when the response claims
    /// more bytes than it carries or than were requested.
    bool ReadBlock(LONG iDescriptor, DWORD iOffset, std::span<unsigned char> area, DWORD& iBytesRead);
    /// Writes one block; bytes that the phone did not accept are sent again. A response that acknowledges no
    /// bytes, or more than were sent, counts as none.
    bool WriteBlock(LONG iDescriptor, DWORD iOffset, std::span<const unsigned char> block);
    /// Keeps the reason why the transfer fails, unless something else failed before; always false.
    bool Fail(const OperationFailure& failure);
    /// The whole write operation except its entry line.
    bool Uploaded(const char* sOperation, const char* sEFS_File, UploadSource& source);
    void Report(const char* sFirstName, const char* sSecondName, int iOperation, DWORD iDone, DWORD iInAll);
    bool IsAborted() const { return m_callbacks.m_bEfsAbort != 0; }

    CommandFrame& m_frame;
    Efs2Callbacks& m_callbacks;
    Efs2Metadata& m_metadata;
    bool m_bLastWriteOpenedTarget = false;
};
