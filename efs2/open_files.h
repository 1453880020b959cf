// Files of the phone as open objects: opened once, read and written at any offset, closed.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// Efs2OpenFiles: opening, writing and closing are tried five times until the phone grants them, reading
/// once, within 2000 ms per attempt. Caller's thread. The frame must outlive it.
///
/// True means that the phone answered; whether it granted the request is in iErrorNo (0: yes; otherwise
/// the phone's error number, of the last response). Other out-values are written only when it did. Without a
/// usable response the result is false and no out-value changes. An open whose responses were all lost may
/// have been carried out; so may a write.
class QUILLET_API Efs2OpenFiles {
public:
    static constexpr DWORD kEfs2MostRead = 1536;   // the most bytes that one read brings
    static constexpr DWORD kEfs2MostWritten = 512; // the most bytes that one write takes

    explicit Efs2OpenFiles(CommandFrame& frame) : m_frame(frame) {}

    /// EFS2_DIAG_OPEN opens sFilePath (at most 243 characters, or nothing is sent). iFlags: 0 to read, 1 to
    /// write, 2 for both; 0x40 makes a missing file, with the permission bits of iMode; 0x80 with that:
    /// only a missing one; 0x200 empties it. Every descriptor needs its EFS2_DIAG_CLOSE: the phone has few.
    bool EFS2_DIAG_OPEN(const char* sFilePath, DWORD iFlags, DWORD iMode, LONG& iDescriptor, DWORD& iErrorNo);

    /// EFS2_DIAG_READ reads up to iSize bytes (kEfs2MostRead at most) at iOffset into pData. Fewer than that
    /// in iBytesRead: the file ends there.
    bool EFS2_DIAG_READ(LONG iDescriptor, DWORD iOffset, unsigned char* pData, DWORD iSize, DWORD& iBytesRead,
                        DWORD& iErrorNo);

    /// EFS2_DIAG_WRITE writes the first of the iSize bytes (kEfs2MostWritten at most) at iOffset. The phone
    /// may take fewer, but not none; iBytesWritten says how many. iSize 0 is refused without a request.
    bool EFS2_DIAG_WRITE(LONG iDescriptor, DWORD iOffset, const unsigned char* pData, DWORD iSize,
                         DWORD& iBytesWritten, DWORD& iErrorNo);

    /// EFS2_DIAG_CLOSE closes a file. Its iErrorNo also reports what the phone could not write.
    bool EFS2_DIAG_CLOSE(LONG iDescriptor, DWORD& iErrorNo);

private:
    CommandFrame& m_frame;
};
