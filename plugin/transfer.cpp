// Copying files between the PC and the phone for the host.
#include <cstring>
#include <optional>

#include "platform/local_files.h"
#include "plugin/connection.h"
#include "plugin/entry_points.h"
#include "plugin/front_state.h"
#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/phone_status.h"
#include "plugin/transfer_progress.h"
#include "qlib/call_layer.h"

namespace {

constexpr int kReplacingFlags = FS_COPYFLAGS_OVERWRITE | FS_COPYFLAGS_RESUME;

int Download(Transfer& transfer, const char* sPhonePath, const char* sLocalName, bool bMove) {
    PhoneStatus status;
    if (!front.ContextHandle || !status.Ask(sPhonePath))
        return FS_FILE_WRITEERROR;
    if (!transfer.Begin(status.iSize))
        return FS_FILE_USERABORT;
    const bool bRead = QLIB_EfsRead(front.ContextHandle, sPhonePath, sLocalName);
    if (transfer.WasAborted())
        return FS_FILE_USERABORT;
    if (!bRead)
        return FS_FILE_WRITEERROR;
    if (bMove)
        QLIB_EFS2_DIAG_UNLINK(front.ContextHandle, sPhonePath);
    return FS_FILE_OK;
}

int Upload(Transfer& transfer, const char* sLocalName, const char* sPhonePath) {
    const std::optional<DWORD> size = LocalFileSize(sLocalName);
    if (!size)
        return FS_FILE_WRITEERROR;
    if (!transfer.Begin(*size))
        return FS_FILE_USERABORT;
    if (!front.ContextHandle)
        return FS_FILE_WRITEERROR;
    const bool bWritten = QLIB_EfsWrite(front.ContextHandle, sLocalName, sPhonePath);
    if (!bWritten && QLIB_EfsWriteOpenedTarget(front.ContextHandle))
        QLIB_EFS2_DIAG_UNLINK(front.ContextHandle, sPhonePath);
    if (transfer.WasAborted())
        return FS_FILE_USERABORT;
    return bWritten ? FS_FILE_OK : FS_FILE_WRITEERROR;
}

// FS_FILE_OK when the phone says that nothing stands at the path.
int CheckTargetIsFree(const char* sPhonePath) {
    PhoneStatus status;
    if (!status.Ask(sPhonePath))
        return FS_FILE_NOTFOUND;
    return status.Exists() ? FS_FILE_EXISTSRESUMEALLOWED : FS_FILE_OK;
}

} // namespace

int HOST_CALL FsGetFile(char* sRemoteName, char* sLocalName, int iCopyFlags, RemoteInfoStruct*) {
    char sPhonePath[kMaxPathSize];
    if (!sLocalName || !IsUsableHostPath(sRemoteName))
        return FS_FILE_WRITEERROR;
    if ((iCopyFlags == 0 || iCopyFlags == FS_COPYFLAGS_MOVE) && LocalFileExists(sLocalName))
        return FS_FILE_EXISTSRESUMEALLOWED;
    TakeHostPath(sRemoteName, sPhonePath);
    return UsePhone(FS_FILE_WRITEERROR, [&](Operation& operation) {
        Transfer transfer;
        if (!transfer.IsClaimed())
            return FS_FILE_WRITEERROR;
        EnsureConnected(operation);
        return Download(transfer, sPhonePath, sLocalName, (iCopyFlags & FS_COPYFLAGS_MOVE) != 0);
    });
}

int HOST_CALL FsPutFile(char* sLocalName, char* sRemoteName, int iCopyFlags) {
    char sPhonePath[kMaxPathSize];
    if (!sLocalName || !CopyHostPath(sRemoteName, sPhonePath))
        return FS_FILE_WRITEERROR;
    return UsePhone(FS_FILE_WRITEERROR, [&](Operation& operation) {
        Transfer transfer;
        if (!transfer.IsClaimed())
            return FS_FILE_WRITEERROR;
        if ((iCopyFlags & kReplacingFlags) == 0) {
            const int iResult = CheckTargetIsFree(sPhonePath);
            if (iResult != FS_FILE_OK)
                return iResult;
        }
        EnsureConnected(operation);
        return Upload(transfer, sLocalName, sPhonePath);
    });
}
