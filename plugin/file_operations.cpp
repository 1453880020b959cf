// Operations on files and folders of the phone, except copies.
#include "plugin/connection.h"
#include "plugin/entry_points.h"
#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/phone_status.h"
#include "plugin/reasons.h"
#include "qlib/call_layer.h"

namespace {

/// Connects and calls `act` with the phone path of sHostPath. Returns its result, or 0 when there is no
/// connection.
template <class Act>
BOOL ActOnPath(const char* sWhat, char* sHostPath, Act act) {
    char sPhonePath[kMaxPathSize];
    if (!TakeHostPath(sHostPath, sPhonePath))
        return RefusePath(sWhat, 0);
    return UsePhone(0, [&](Operation& operation) {
        operation.Describe(sWhat, sPhonePath);
        EnsureConnected(operation);
        if (!operation.Context())
            return operation.Fail(0, NoHandsetReason(operation));
        return act(operation, static_cast<const char*>(sPhonePath)) ? 1 : 0;
    });
}

/// Returns true when the phone answered. A refusal is logged to the host, but does not show in the result.
bool Remove(Operation& operation, bool (*pfnRequest)(void*, const char*), const char* sPhonePath) {
    const bool bAnswered = pfnRequest(operation.Context(), sPhonePath);
    if (!bAnswered || IsRefused(operation))
        operation.LogFailure(FailureReason(operation));
    return bAnswered;
}

bool IsFolderOnPhone(Operation& operation, const char* sPhonePath) {
    PhoneStatus status;
    return status.Query(operation, sPhonePath) && status.IsFolder();
}

bool MakeFolder(Operation& operation, const char* sPhonePath) {
    if (QLIB_EFS2_DIAG_MKDIR(operation.Context(), sPhonePath))
        return true;
    const OperationFailure failure = LastFailure(operation);
    if (kExistingFolderCountsAsMade && IsFolderOnPhone(operation, sPhonePath))
        return true;
    // Other hosts expect existing folders and need no log line: they make the folders of every tree that they
    // copy.
    const bool bExpected = !kExistingFolderCountsAsMade && failure.iErrorNo == EFS2_ERROR_EXISTS;
    return bExpected ? false : operation.Fail(false, FailureReason(operation, failure));
}

int Rename(Operation& operation, const char* sOldPath, const char* sNewPath) {
    DWORD iErrorNo = 0;
    if (!QLIB_EFS2_DIAG_RENAME(operation.Context(), sOldPath, sNewPath, &iErrorNo))
        return operation.Fail(FS_FILE_NOTSUPPORTED, FailureReason(operation));
    if (iErrorNo != 0)
        return operation.Fail(FS_FILE_WRITEERROR,
                              FailureReason(operation, {OperationFailure::Kind::Refused, iErrorNo}));
    return FS_FILE_OK;
}

/// Fails a call for which the phone has no operation.
BOOL Decline(char* sHostPath) {
    if (kEntryPointsChangePaths && IsUsableHostPath(sHostPath))
        ToPhonePath(sHostPath);
    return 0;
}

} // namespace

BOOL HOST_CALL FsDeleteFile(char* sRemoteName) {
    return ActOnPath("delete", sRemoteName, [](Operation& operation, const char* sPhonePath) {
        return Remove(operation, QLIB_EFS2_DIAG_UNLINK, sPhonePath);
    });
}

BOOL HOST_CALL FsMkDir(char* sPath) {
    return ActOnPath("make folder", sPath, MakeFolder);
}

BOOL HOST_CALL FsRemoveDir(char* sRemoteName) {
    return ActOnPath("remove folder", sRemoteName, [](Operation& operation, const char* sPhonePath) {
        return Remove(operation, QLIB_EFS2_DIAG_RMDIR, sPhonePath);
    });
}

int HOST_CALL FsRenMovFile(char* sOldName, char* sNewName, BOOL bMove, BOOL bOverWrite, RemoteInfoStruct*) {
    char sOldPath[kMaxPathSize];
    char sNewPath[kMaxPathSize];
    const bool bCopy = (bMove & kHostFlagMask) == 0;
    const char* const sWhat = bCopy ? "copy on the phone" : "rename or move";
    if (!TakeHostPath(sOldName, sOldPath) || !TakeHostPath(sNewName, sNewPath))
        return RefusePath(sWhat, FS_FILE_WRITEERROR);
    return UsePhone(FS_FILE_WRITEERROR, [&](Operation& operation) {
        operation.Describe(sWhat, sOldPath, sNewPath);
        if (bCopy)
            return operation.Fail(FS_FILE_NOTSUPPORTED, "the phone has no such operation");
        if ((bOverWrite & kHostFlagMask) == 0) {
            const int iResult = CheckTargetIsFree(operation, sNewPath, {FS_FILE_READERROR, FS_FILE_EXISTS});
            if (iResult != FS_FILE_OK)
                return iResult;
        }
        return Rename(operation, sOldPath, sNewPath);
    });
}

BOOL HOST_CALL FsSetAttr(char* sRemoteName, int) {
    return Decline(sRemoteName);
}

BOOL HOST_CALL FsSetTime(char* sRemoteName, FILETIME*, FILETIME*, FILETIME*) {
    return Decline(sRemoteName);
}
