#include "efs2/callbacks.h"

#include "diag/command.h"

void Efs2Callbacks::ConfigureEfsCallbacks(void* pUserData, EfsTransferCallBack pfnTransfer,
                                          EfsDirectoryCallBack pfnDirectory) {
    m_pEfsCallBackUserData = pUserData;
    m_pfnEfsTransferCallBack = pfnTransfer;
    m_pfnEfsDirCallBack = pfnDirectory;
}

bool Efs2Callbacks::EFS2_DIAG_ABORT() {
    LogLine(m_frame, LOG_FN, "EFS2_DIAG_ABORT( )");
    m_bEfsAbort = 1;
    return true;
}
