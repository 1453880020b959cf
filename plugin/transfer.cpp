// Copying files between the PC and the phone for the host.
#include <optional>
#include <string>

#include "platform/local_files.h"
#include "plugin/connection.h"
#include "plugin/entry_points.h"
#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/phone_status.h"
#include "plugin/reasons.h"
#include "plugin/transfer_progress.h"
#include "qlib/call_layer.h"

namespace {

constexpr int kReplacingFlags = FS_COPYFLAGS_OVERWRITE | FS_COPYFLAGS_RESUME;

constexpr char kUpload[] = "copy to the phone";
constexpr char kBusy[] = "another copy is running";

/// Deletes the phone's file after a move to the PC, if all of it arrived.
int RemoveSource(Operation& operation, const Transfer& transfer, const PhoneStatus& status,
                 const char* sPhonePath) {
    if (!status.Exists() || transfer.BytesDone() != status.iSize)
        return operation.Fail(
            FS_FILE_READERROR,
            std::to_string(transfer.BytesDone()) + " bytes arrived, but the phone announced " +
                (status.Exists() ? std::to_string(status.iSize) : "no size") + "; the phone's file stays");
    if (!QLIB_EFS2_DIAG_UNLINK(operation.Context(), sPhonePath) || IsRefused(operation))
        operation.LogFailure("copied, but not deleted on the phone: " + FailureReason(operation));
    return FS_FILE_OK;
}

int Download(Operation& operation, Transfer& transfer, const char* sPhonePath, const char* sLocalName,
             bool bMove) {
    PhoneStatus status;
    if (!operation.Context() || !status.Query(operation, sPhonePath))
        return operation.Fail(FS_FILE_WRITEERROR, FailureReason(operation));
    if (!transfer.Begin(status.iSize))
        return FS_FILE_USERABORT;
    const bool bRead = QLIB_EfsRead(operation.Context(), sPhonePath, sLocalName);
    if (transfer.WasAborted())
        return FS_FILE_USERABORT;
    if (!bRead)
        return operation.Fail(FS_FILE_WRITEERROR, FailureReason(operation));
    return bMove ? RemoveSource(operation, transfer, status, sPhonePath) : FS_FILE_OK;
}

int Upload(Operation& operation, Transfer& transfer, const char* sLocalName, const char* sPhonePath) {
    const std::optional<DWORD> size = LocalFileSize(sLocalName);
    if (!size)
        return operation.Fail(FS_FILE_WRITEERROR,
                              "the local file is missing, no plain file, or 4 GB or larger");
    if (!transfer.Begin(*size))
        return FS_FILE_USERABORT;
    if (!operation.Context())
        return operation.Fail(FS_FILE_WRITEERROR, NoHandsetReason(operation));
    const bool bWritten = QLIB_EfsWrite(operation.Context(), sLocalName, sPhonePath);
    if (!bWritten && !transfer.WasAborted())
        operation.LogFailure(FailureReason(operation));
    if (!bWritten && QLIB_EfsWriteOpenedTarget(operation.Context()))
        QLIB_EFS2_DIAG_UNLINK(operation.Context(), sPhonePath);
    if (transfer.WasAborted())
        return FS_FILE_USERABORT;
    return bWritten ? FS_FILE_OK : FS_FILE_WRITEERROR;
}

} // namespace

int HOST_CALL FsGetFile(char* sRemoteName, char* sLocalName, int iCopyFlags, RemoteInfoStruct*) {
    char sPhonePath[kMaxPathSize];
    const bool bMove = (iCopyFlags & FS_COPYFLAGS_MOVE) != 0;
    const char* const sWhat = bMove ? "move from the phone" : "copy from the phone";
    if (!sLocalName || !IsUsableHostPath(sRemoteName))
        return RefusePath(sWhat, FS_FILE_WRITEERROR);
    if ((iCopyFlags == 0 || iCopyFlags == FS_COPYFLAGS_MOVE) && LocalFileExists(sLocalName))
        return FS_FILE_EXISTSRESUMEALLOWED;
    TakeHostPath(sRemoteName, sPhonePath);
    return UsePhone(FS_FILE_WRITEERROR, [&](Operation& operation) {
        operation.Describe(sWhat, sPhonePath);
        Transfer transfer(operation);
        if (!transfer.IsClaimed())
            return operation.Fail(FS_FILE_WRITEERROR, kBusy);
        EnsureConnected(operation);
        return Download(operation, transfer, sPhonePath, sLocalName, bMove);
    });
}

int HOST_CALL FsPutFile(char* sLocalName, char* sRemoteName, int iCopyFlags) {
    char sPhonePath[kMaxPathSize];
    if (!sLocalName || !CopyHostPath(sRemoteName, sPhonePath))
        return RefusePath(kUpload, FS_FILE_WRITEERROR);
    return UsePhone(FS_FILE_WRITEERROR, [&](Operation& operation) {
        operation.Describe(kUpload, sPhonePath);
        Transfer transfer(operation);
        if (!transfer.IsClaimed())
            return operation.Fail(FS_FILE_WRITEERROR, kBusy);
        if ((iCopyFlags & kReplacingFlags) == 0) {
            const int iResult =
                CheckTargetIsFree(operation, sPhonePath, {FS_FILE_NOTFOUND, FS_FILE_EXISTSRESUMEALLOWED});
            if (iResult != FS_FILE_OK)
                return iResult;
        }
        EnsureConnected(operation);
        return Upload(operation, transfer, sLocalName, sPhonePath);
    });
}
