// What the host does to files and folders on the phone without copying them.
#include "plugin/connection.h"
#include "plugin/entry_points.h"
#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/phone_status.h"
#include "qlib/call_layer.h"

namespace {

// Connects and calls `act` with the phone path of sHostPath: 1 when it returned true.
template <class Act>
BOOL ActOnPath(char* sHostPath, Act act) {
    char sPhonePath[kMaxPathSize];
    if (!TakeHostPath(sHostPath, sPhonePath))
        return 0;
    return UsePhone(0, [&](Operation& operation) {
        EnsureConnected(operation);
        return operation.Context() && act(operation, static_cast<const char*>(sPhonePath)) ? 1 : 0;
    });
}

bool IsFolderOnPhone(Operation& operation, const char* sPhonePath) {
    PhoneStatus status;
    return status.Ask(operation, sPhonePath) && status.IsFolder();
}

// FS_FILE_OK when nothing stands at the new path.
int CheckTargetIsFree(Operation& operation, const char* sNewPath) {
    PhoneStatus status;
    if (!status.Ask(operation, sNewPath))
        return FS_FILE_READERROR;
    return status.Exists() ? FS_FILE_EXISTS : FS_FILE_OK;
}

int Rename(Operation& operation, const char* sOldPath, const char* sNewPath) {
    DWORD iErrorNo = 0;
    if (!QLIB_EFS2_DIAG_RENAME(operation.Context(), sOldPath, sNewPath, &iErrorNo))
        return FS_FILE_NOTSUPPORTED;
    return iErrorNo == 0 ? FS_FILE_OK : FS_FILE_WRITEERROR;
}

// What the phone has no operation for.
BOOL Decline(char* sHostPath) {
    if (kEntryPointsChangePaths && IsUsableHostPath(sHostPath))
        ToPhonePath(sHostPath);
    return 0;
}

} // namespace

BOOL HOST_CALL FsDeleteFile(char* sRemoteName) {
    return ActOnPath(sRemoteName, [](Operation& operation, const char* sPhonePath) {
        return QLIB_EFS2_DIAG_UNLINK(operation.Context(), sPhonePath);
    });
}

BOOL HOST_CALL FsMkDir(char* sPath) {
    return ActOnPath(sPath, [](Operation& operation, const char* sPhonePath) {
        return QLIB_EFS2_DIAG_MKDIR(operation.Context(), sPhonePath) ||
               (kExistingFolderCountsAsMade && IsFolderOnPhone(operation, sPhonePath));
    });
}

BOOL HOST_CALL FsRemoveDir(char* sRemoteName) {
    return ActOnPath(sRemoteName, [](Operation& operation, const char* sPhonePath) {
        return QLIB_EFS2_DIAG_RMDIR(operation.Context(), sPhonePath);
    });
}

int HOST_CALL FsRenMovFile(char* sOldName, char* sNewName, BOOL bMove, BOOL bOverWrite, RemoteInfoStruct*) {
    char sOldPath[kMaxPathSize];
    char sNewPath[kMaxPathSize];
    if (!TakeHostPath(sOldName, sOldPath) || !TakeHostPath(sNewName, sNewPath))
        return FS_FILE_WRITEERROR;
    if ((bMove & kHostFlagMask) == 0)
        return FS_FILE_NOTSUPPORTED;
    return UsePhone(FS_FILE_WRITEERROR, [&](Operation& operation) {
        if ((bOverWrite & kHostFlagMask) == 0) {
            const int iResult = CheckTargetIsFree(operation, sNewPath);
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
