// The callbacks of the file-system operations, and the request to abort a transfer.
#pragma once

#include "link/directory_callback.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// Reports the progress of a transfer after each block: two names, the operation (4 read, 5 write), a
/// sub-code (0), bytes done, bytes in total (reads: the same as done), user data. Runs on the caller's thread
/// between two exchanges, so it may use the connection, but must not start another transfer on it. The return
/// value is ignored; EFS2_DIAG_ABORT stops a transfer.
using EfsTransferCallBack = unsigned char (*)(char* const sFirstName, char* const sSecondName, int iOperation,
                                              int iSubCode, DWORD iBytesDone, DWORD iBytesInAll,
                                              void* pUserData);

/// Efs2Callbacks holds the callbacks that a connection's listings and transfers report to. Caller's thread.
class QUILLET_API Efs2Callbacks {
public:
    explicit Efs2Callbacks(CommandFrame& frame) : m_frame(frame) {}

    /// ConfigureEfsCallbacks replaces the user data and both callbacks; null switches a callback off.
    void ConfigureEfsCallbacks(void* pUserData, EfsTransferCallBack pfnTransfer,
                               EfsDirectoryCallBack pfnDirectory);

    /// EFS2_DIAG_ABORT ends the running transfer before its next block, and makes it request the removal of
    /// its partial copy. It sends nothing itself. Without a running transfer it has no effect: the next
    /// transfer clears it when it starts. Always true.
    bool EFS2_DIAG_ABORT();

protected:
    friend class Efs2Directory;
    friend class Efs2Transfer;

    CommandFrame& m_frame;
    void* m_pEfsCallBackUserData = nullptr;
    EfsTransferCallBack m_pfnEfsTransferCallBack = nullptr;
    EfsDirectoryCallBack m_pfnEfsDirCallBack = nullptr;
    DWORD m_bEfsAbort = 0;
};
