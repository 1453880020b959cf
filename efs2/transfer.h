// Copying whole files between the computer and the phone.
#pragma once

#include <span>

#include "efs2/callbacks.h"
#include "efs2/metadata.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class UploadSource;

/// Efs2Transfer copies files, block by block (1536 bytes from the phone, 512 to it), one exchange of up to
/// 2000 ms per block; what opens, closes and writes is tried five times. After each block the transfer
/// callback is called. Caller's thread. Frame, callbacks and metadata must outlive it.
///
/// True means that the copy is whole, or that EFS2_DIAG_ABORT ended it: then the removal of the partial copy
/// was asked for (whether it worked is not looked at), and whoever asked for the abort remembers that. A file
/// of more than 4 GiB - 1 byte fails.
///
/// Phone paths have at most 243 characters. A local path names a file as the C library takes it.
class QUILLET_API Efs2Transfer {
public:
    Efs2Transfer(CommandFrame& frame, Efs2Callbacks& callbacks, Efs2Metadata& metadata)
        : m_frame(frame), m_callbacks(callbacks), m_metadata(metadata) {}

    /// EFS2_DIAG_READ_FILE copies the phone file sEFS_File to sLocalFile, which is emptied first; null or
    /// empty: a file of the phone file's own name in the current directory; 1024 characters or more: refused.
    /// After a failure the partial local file stays. False also when the local disk does not take every byte.
    bool EFS2_DIAG_READ_FILE(const char* sLocalFile, const char* sEFS_File);

    /// EFS2_DIAG_WRITE_FILE copies a local file to the phone file sEFS_File, which is made or emptied. After
    /// a failure whatever was written stays there (EFS2_LastWriteOpenedTarget). False also when the phone
    /// has no room for it, and when the file turns out to be shorter than it was at the start.
    bool EFS2_DIAG_WRITE_FILE(const char* sLocalFile, const char* sEFS_File);

    /// EFS2_DIAG_WRITE_FILE_MEM writes iSize bytes of memory to the phone file sEFS_File.
    bool EFS2_DIAG_WRITE_FILE_MEM(const char* pLocalFile, DWORD iSize, const char* sEFS_File);

    /// EFS2_LastWriteOpenedTarget tells whether the phone granted the last write operation its file, which
    /// empties it. When false, a file that stood there is not the write's to delete: the phone refused, or
    /// all its five answers were lost, and then the file may have been emptied all the same.
    bool EFS2_LastWriteOpenedTarget() const { return m_bLastWriteOpenedTarget; }

private:
    bool PerformEFS2ReadOp(const char* sEFS_File, DWORD* piBytesRead, const char* sLocalFile);
    bool PerformEFS2WriteOp(const char* sEFS_File, UploadSource& source);
    bool EFS2FileOpen(const char* sEFS_File, LONG iOpenFlags, LONG iMode, LONG* piDescriptor);
    bool EFS2FileClose(LONG iDescriptor);
    bool EFS2ReadEntireFile(LONG iDescriptor, DWORD* piBytesRead, const char* sGivenLocalFile,
                            const char* sLocalFile);
    bool EFS2WriteEntireFile(LONG iDescriptor, UploadSource& source, const char* sEFS_File);

    /// Asks for one block. False when no usable answer came: none at all, a refusal, or one that claims more
    /// bytes than it carries or than were asked for.
    bool ReadBlock(LONG iDescriptor, DWORD iOffset, std::span<unsigned char> area, DWORD& iBytesRead);
    /// Writes one block; what the phone leaves over of it is sent again. An answer that acknowledges nothing,
    /// or more than was sent, is as bad as none.
    bool WriteBlock(LONG iDescriptor, DWORD iOffset, std::span<const unsigned char> block);
    /// Notes why the transfer fails, unless something else failed before; always false.
    bool Fail(const OperationFailure& failure);
    /// Everything of a write operation but its entry line.
    bool Uploaded(const char* sOperation, const char* sEFS_File, UploadSource& source);
    void Report(const char* sFirstName, const char* sSecondName, int iOperation, DWORD iDone, DWORD iInAll);
    bool IsAborted() const { return m_callbacks.m_bEfsAbort != 0; }

    CommandFrame& m_frame;
    Efs2Callbacks& m_callbacks;
    Efs2Metadata& m_metadata;
    bool m_bLastWriteOpenedTarget = false;
};
