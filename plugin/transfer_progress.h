// The one transfer that may run, and its progress.
#pragma once

#include "platform/types.h"

class Operation;

/// Transfer is the claim to the one transfer that can run at a time: the host may ask for another one while a
/// callback of the running one is out, and that one must not touch its partial copy. Lives within an
/// operation, on its thread.
class Transfer {
public:
    /// Claims the transfer, when none is running.
    explicit Transfer(Operation& operation);
    ~Transfer();
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    /// False when another transfer is running: then this one must fail.
    bool IsClaimed() const { return m_bClaimed; }

    /// Begin sets the size in bytes that is 100 % and reports 0 % to the host. False when the user aborts:
    /// then nothing is to be transferred.
    bool Begin(DWORD iSize);

    /// BytesDone is what the library said after the last block.
    DWORD BytesDone() const { return m_iBytesDone; }

    /// OnBlock reports the percentage (at most 100) to the host and passes the user's abort on to the
    /// library.
    void OnBlock(DWORD iBytesDone);

    /// WasAborted tells whether the user aborted the transfer. The library reports such a transfer as done.
    bool WasAborted() const { return m_bAborted; }

private:
    void Report(int iPercent);

    Operation& m_operation;
    const bool m_bClaimed;
    DWORD m_iSize = 0;
    DWORD m_iBytesDone = 0;
    bool m_bAborted = false;
};

/// TransferProgress is the library's transfer callback: it hands the bytes done to the running transfer.
/// Always 0.
unsigned char TransferProgress(char* const sFirstName, char* const sSecondName, int iOperation, int iSubCode,
                               DWORD iBytesDone, DWORD iBytesInAll, void* pUserData);
