#include "qlib/call_layer.h"

#include <type_traits>

#include "portserver/efs.h"
#include "qlib/diag_ftm.h"
#include "qlib/resource_manager.h"

namespace {

// Passes an argument in the form that the method takes: as pointer, by reference, or its value.
template <class Parameter, class Argument>
Parameter HandOn(Argument* pArgument) {
    if constexpr (std::is_pointer_v<Parameter>)
        return pArgument;
    else
        return *pArgument;
}

// Calls a method of the context's connection. False without a connection or when memory runs out.
template <class Class, class... Parameters, class... Arguments>
bool ForwardAsGiven(void* hContext, bool (Class::*pMethod)(Parameters...), Arguments*... pArguments) {
    try {
        Diag_FTM* const pPhone = QLib_ResourceManager::GetDiag_FTM(hContext);
        return pPhone != nullptr && (pPhone->*pMethod)(HandOn<Parameters>(pArguments)...);
    } catch (...) {
        return false;
    }
}

// The same for methods that accept no null pointers: false for one.
template <class Method, class... Arguments>
bool Forward(void* hContext, Method pMethod, Arguments*... pArguments) {
    return ((pArguments != nullptr) && ...) && ForwardAsGiven(hContext, pMethod, pArguments...);
}

} // namespace

void QLIB_SetQpstMode(unsigned char iMode) {
    QLib_ResourceManager::SetIsUsingQpst(iMode == 1);
}

void* QLIB_ConnectPort(unsigned short iComPort) {
    void* const hContext = QLib_ResourceManager::CreateContext(iComPort);
    Forward(hContext, &Diag_FTM::OpenPort);
    return hContext;
}

void QLIB_DisconnectPort(void* hContext) {
    if (QLib_ResourceManager::HasDiag_FTM(hContext))
        Forward(hContext, &Diag_FTM::ClosePort);
    QLib_ResourceManager::DestroyContext(hContext, false);
}

bool QLIB_IsPhoneConnected(void* hContext) {
    return Forward(hContext, &Diag_FTM::IsPhoneConnected);
}

PortError QLIB_GetPortError(void* hContext) {
    const Diag_FTM* const pPhone = QLib_ResourceManager::GetDiag_FTM(hContext);
    return pPhone ? pPhone->GetPortError() : PortError::None;
}

void QLIB_ConfigureCallBacks(void* hContext, EfsDirectoryCallBack pfnEfs,
                             SoftwareDownloadCallBack pfnSoftwareDownload,
                             AsyncMessageCallBack pfnAsyncMessage) {
    if (EFS* const pFiles = pfnEfs != nullptr ? QLib_ResourceManager::GetEFS(hContext) : nullptr)
        pFiles->ConfigureCallBacks(pfnEfs, hContext);
    if (SoftwareDownload* const pDownload =
            pfnSoftwareDownload ? QLib_ResourceManager::GetSoftwareDownload(hContext) : nullptr)
        pDownload->ConfigureCallBacks(pfnSoftwareDownload, hContext);
    if (Diag_FTM* const pPhone =
            pfnAsyncMessage != nullptr ? QLib_ResourceManager::GetDiag_FTM(hContext) : nullptr)
        pPhone->ConfigureAsyncMessageCallBack(hContext, pfnAsyncMessage);
}

void QLIB_ConfigureEfsCallbacks(void* hContext, EfsTransferCallBack pfnTransfer,
                                EfsDirectoryCallBack pfnDirectory) {
    if (Diag_FTM* const pPhone = QLib_ResourceManager::GetDiag_FTM(hContext))
        pPhone->ConfigureEfsCallbacks(hContext, pfnTransfer, pfnDirectory);
}

bool QLIB_DIAG_GET_FILE_ATTRIBUTES(void* hContext, const char* sPath, DWORD* piFirst, DWORD* piSecond,
                                   DWORD* piThird) {
    return Forward(hContext, &Diag_FTM::DIAG_GET_FILE_ATTRIBUTES, sPath, piFirst, piSecond, piThird);
}

bool QLIB_EFS2_DIAG_ABORT(void* hContext) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_ABORT);
}

bool QLIB_EfsDirectory(void* hContext, const char* sFolderPath) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_ENUM_DIR, sFolderPath);
}

bool QLIB_EfsRead(void* hContext, const char* sEFS_File, const char* sLocalFile) {
    return sEFS_File != nullptr &&
           ForwardAsGiven(hContext, &Diag_FTM::EFS2_DIAG_READ_FILE, sLocalFile, sEFS_File);
}

bool QLIB_EfsWrite(void* hContext, const char* sLocalFile, const char* sEFS_File) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_WRITE_FILE, sLocalFile, sEFS_File);
}

bool QLIB_EfsWriteOpenedTarget(void* hContext) {
    const Diag_FTM* const pPhone = QLib_ResourceManager::GetDiag_FTM(hContext);
    return pPhone != nullptr && pPhone->EFS2_LastWriteOpenedTarget();
}

bool QLIB_EfsLastFailure(void* hContext, OperationFailure* pFailure) {
    const Diag_FTM* const pPhone = QLib_ResourceManager::GetDiag_FTM(hContext);
    if (pPhone == nullptr || pFailure == nullptr)
        return false;
    *pFailure = pPhone->EFS2_LastFailure();
    return true;
}

bool QLIB_EFS2_DIAG_UNLINK(void* hContext, const char* sFilePath) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_UNLINK, sFilePath);
}

bool QLIB_EFS2_DIAG_MKDIR(void* hContext, const char* sDir) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_MKDIR, sDir);
}

bool QLIB_EFS2_DIAG_RMDIR(void* hContext, const char* sFolderPath) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_RMDIR, sFolderPath);
}

bool QLIB_EFS2_DIAG_READ_LINK(void* hContext, const char* sFilePath, char* sPointedFilePath) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_READ_LINK, sFilePath, sPointedFilePath);
}

bool QLIB_EFS2_DIAG_CREATE_LINK(void* hContext, const char* sFilePath, const char* sPointedFilePath) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_CREATE_LINK, sFilePath, sPointedFilePath);
}

bool QLIB_EFS2_DIAG_RENAME(void* hContext, const char* sOldFilePath, const char* sNewFilePath,
                           DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_RENAME, sOldFilePath, sNewFilePath, piErrorNo);
}

bool QLIB_EFS2_DIAG_STAT(void* hContext, const char* sFilePath, DWORD* piErrorNo, DWORD* piMode,
                         DWORD* piSize, DWORD* piNlink, DWORD* piAtime, DWORD* piMtime, DWORD* piCtime) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_STAT, sFilePath, piErrorNo, piMode, piSize, piNlink,
                   piAtime, piMtime, piCtime);
}

bool QLIB_EFS2_DIAG_STATFS(void* hContext, const char* sFilePath, DWORD* piErrorNo, DWORD* piFS_ID,
                           DWORD* piFS_Type, DWORD* piBlockSize, DWORD* piTotalBlocks, DWORD* piAvailBlocks,
                           DWORD* piFreeBlocks, DWORD* piMaxFileSize, DWORD* piNfiles, DWORD* piMaxNfiles) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_STATFS, sFilePath, piErrorNo, piFS_ID, piFS_Type,
                   piBlockSize, piTotalBlocks, piAvailBlocks, piFreeBlocks, piMaxFileSize, piNfiles,
                   piMaxNfiles);
}

bool QLIB_EFS2_DIAG_OPEN(void* hContext, const char* sFilePath, DWORD iFlags, DWORD iMode, LONG* piDescriptor,
                         DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_OPEN, sFilePath, &iFlags, &iMode, piDescriptor, piErrorNo);
}

bool QLIB_EFS2_DIAG_READ(void* hContext, LONG iDescriptor, DWORD iOffset, unsigned char* pData, DWORD iSize,
                         DWORD* piBytesRead, DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_READ, &iDescriptor, &iOffset, pData, &iSize, piBytesRead,
                   piErrorNo);
}

bool QLIB_EFS2_DIAG_WRITE(void* hContext, LONG iDescriptor, DWORD iOffset, const unsigned char* pData,
                          DWORD iSize, DWORD* piBytesWritten, DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_WRITE, &iDescriptor, &iOffset, pData, &iSize,
                   piBytesWritten, piErrorNo);
}

bool QLIB_EFS2_DIAG_CLOSE(void* hContext, LONG iDescriptor, DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_CLOSE, &iDescriptor, piErrorNo);
}

bool QLIB_EFS2_DIAG_OPENDIR(void* hContext, const char* sFolderPath, DWORD* piDirectory, DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_OPENDIR, sFolderPath, piDirectory, piErrorNo);
}

bool QLIB_EFS2_DIAG_READDIR(void* hContext, DWORD iDirectory, DWORD iSequence, Efs2DirEntry* pEntry,
                            DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_READDIR, &iDirectory, &iSequence, pEntry, piErrorNo);
}

bool QLIB_EFS2_DIAG_CLOSEDIR(void* hContext, DWORD iDirectory, DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_CLOSEDIR, &iDirectory, piErrorNo);
}

bool QLIB_EFS2_DIAG_MAKE_DIRECTORY(void* hContext, const char* sFolderPath, DWORD iMode, DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_MAKE_DIRECTORY, sFolderPath, &iMode, piErrorNo);
}

bool QLIB_EFS2_DIAG_REMOVE_DIRECTORY(void* hContext, const char* sFolderPath, DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_REMOVE_DIRECTORY, sFolderPath, piErrorNo);
}

bool QLIB_EFS2_DIAG_REMOVE_FILE(void* hContext, const char* sFilePath, DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_REMOVE_FILE, sFilePath, piErrorNo);
}

bool QLIB_EFS2_DIAG_MAKE_LINK(void* hContext, const char* sFilePath, const char* sPointedFilePath,
                              DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_MAKE_LINK, sFilePath, sPointedFilePath, piErrorNo);
}

bool QLIB_EFS2_DIAG_LINK_TARGET(void* hContext, const char* sFilePath, char* sPointedFilePath,
                                DWORD* piErrorNo) {
    return Forward(hContext, &Diag_FTM::EFS2_DIAG_LINK_TARGET, sFilePath, sPointedFilePath, piErrorNo);
}
