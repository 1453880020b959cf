// Copying files between the PC and the phone for the host.
#include <cstring>
#include <optional>

#include "platform/local_files.h"
#include "plugin/connection.h"
#include "plugin/entry_points.h"
#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/phone_status.h"
#include "plugin/transfer_progress.h"
#include "qlib/call_layer.h"

namespace {

constexpr int kReplacingFlags = FS_COPYFLAGS_OVERWRITE | FS_COPYFLAGS_RESUME;

int Download(Operation& operation, Transfer& transfer, const char* sPhonePath, const char* sLocalName,
             bool bMove) {
    PhoneStatus status;
    if (!operation.Context() || !status.Ask(operation, sPhonePath))
        return FS_FILE_WRITEERROR;
    if (!transfer.Begin(status.iSize))
        return FS_FILE_USERABORT;
    const bool bRead = QLIB_EfsRead(operation.Context(), sPhonePath, sLocalName);
    if (transfer.WasAborted())
        return FS_FILE_USERABORT;
    if (!bRead)
        return FS_FILE_WRITEERROR;
    if (bMove)
        QLIB_EFS2_DIAG_UNLINK(operation.Context(), sPhonePath);
    return FS_FILE_OK;
}

int Upload(Operation& operation, Transfer& transfer, const char* sLocalName, const char* sPhonePath) {
    const std::optional<DWORD> size = LocalFileSize(sLocalName);
    if (!size)
        return FS_FILE_WRITEERROR;
    if (!transfer.Begin(*size))
        return FS_FILE_USERABORT;
    if (!operation.Context())
        return FS_FILE_WRITEERROR;
    const bool bWritten = QLIB_EfsWrite(operation.Context(), sLocalName, sPhonePath);
    if (!bWritten && QLIB_EfsWriteOpenedTarget(operation.Context()))
        QLIB_EFS2_DIAG_UNLINK(operation.Context(), sPhonePath);
    if (transfer.WasAborted())
        return FS_FILE_USERABORT;
    return bWritten ? FS_FILE_OK : FS_FILE_WRITEERROR;
}

// FS_FILE_OK when the phone says that nothing stands at the path.
int CheckTargetIsFree(Operation& operation, const char* sPhonePath) {
    PhoneStatus status;
    if (!status.Ask(operation, sPhonePath))
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
        Transfer transfer(operation);
        if (!transfer.IsClaimed())
            return FS_FILE_WRITEERROR;
        EnsureConnected(operation);
        return Download(operation, transfer, sPhonePath, sLocalName, (iCopyFlags & FS_COPYFLAGS_MOVE) != 0);
    });
}

int HOST_CALL FsPutFile(char* sLocalName, char* sRemoteName, int iCopyFlags) {
    char sPhonePath[kMaxPathSize];
    if (!sLocalName || !CopyHostPath(sRemoteName, sPhonePath))
        return FS_FILE_WRITEERROR;
    return UsePhone(FS_FILE_WRITEERROR, [&](Operation& operation) {
        Transfer transfer(operation);
        if (!transfer.IsClaimed())
            return FS_FILE_WRITEERROR;
        if ((iCopyFlags & kReplacingFlags) == 0) {
            const int iResult = CheckTargetIsFree(operation, sPhonePath);
            if (iResult != FS_FILE_OK)
                return iResult;
        }
        EnsureConnected(operation);
        return Upload(operation, transfer, sLocalName, sPhonePath);
    });
}
