// The running transfer and its progress.
#pragma once

#include "platform/types.h"

class Operation;

/// Transfer claims the one transfer that can run at a time. The host may request another one during a
/// callback of the running one, and that must not touch the partial copy. It is used within an operation, on
/// its thread.
class Transfer {
public:
    /// Claims the transfer if none is running.
    explicit Transfer(Operation& operation);
    ~Transfer();
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    /// False when another transfer is running. This one must then fail.
    bool IsClaimed() const { return m_bClaimed; }

    /// Sets the size in bytes that is 100 %, and reports 0 % to the host. Returns false when the user aborts;
    /// then nothing may be transferred.
    bool Begin(DWORD iSize);

    /// The number of bytes that the library reported after the last block.
    DWORD BytesDone() const { return m_iBytesDone; }

    /// Reports the percentage (at most 100) to the host, and passes the user's abort on to the library.
    void OnBlock(DWORD iBytesDone);

    /// True when the user aborted the transfer. The library reports such a transfer as done.
    bool WasAborted() const { return m_bAborted; }

private:
    void Report(int iPercent);

    Operation& m_operation;
    const bool m_bClaimed;
    DWORD m_iSize = 0;
    DWORD m_iBytesDone = 0;
    bool m_bAborted = false;
};

/// TransferProgress is the library's transfer callback: it passes the number of bytes to the running
/// transfer. Always returns 0.
unsigned char TransferProgress(char* const sFirstName, char* const sSecondName, int iOperation, int iSubCode,
                               DWORD iBytesDone, DWORD iBytesInAll, void* pUserData);
