// What the host does to files and folders on the phone without copying them.
#include "plugin/connection.h"
#include "plugin/entry_points.h"
#include "plugin/front_state.h"
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
        return front.ContextHandle && act(static_cast<const char*>(sPhonePath)) ? 1 : 0;
    });
}

bool IsFolderOnPhone(const char* sPhonePath) {
    PhoneStatus status;
    return status.Ask(sPhonePath) && status.IsFolder();
}

// FS_FILE_OK when nothing stands at the new path.
int CheckTargetIsFree(const char* sNewPath) {
    PhoneStatus status;
    if (!status.Ask(sNewPath))
        return FS_FILE_READERROR;
    return status.Exists() ? FS_FILE_EXISTS : FS_FILE_OK;
}

int Rename(const char* sOldPath, const char* sNewPath) {
    DWORD iErrorNo = 0;
    if (!QLIB_EFS2_DIAG_RENAME(front.ContextHandle, sOldPath, sNewPath, &iErrorNo))
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
    return ActOnPath(sRemoteName, [](const char* sPhonePath) {
        return QLIB_EFS2_DIAG_UNLINK(front.ContextHandle, sPhonePath);
    });
}

BOOL HOST_CALL FsMkDir(char* sPath) {
    return ActOnPath(sPath, [](const char* sPhonePath) {
        return QLIB_EFS2_DIAG_MKDIR(front.ContextHandle, sPhonePath) ||
               (kExistingFolderCountsAsMade && IsFolderOnPhone(sPhonePath));
    });
}

BOOL HOST_CALL FsRemoveDir(char* sRemoteName) {
    return ActOnPath(sRemoteName, [](const char* sPhonePath) {
        return QLIB_EFS2_DIAG_RMDIR(front.ContextHandle, sPhonePath);
    });
}

int HOST_CALL FsRenMovFile(char* sOldName, char* sNewName, BOOL bMove, BOOL bOverWrite, RemoteInfoStruct*) {
    char sOldPath[kMaxPathSize];
    char sNewPath[kMaxPathSize];
    if (!TakeHostPath(sOldName, sOldPath) || !TakeHostPath(sNewName, sNewPath))
        return FS_FILE_WRITEERROR;
    if ((bMove & kHostFlagMask) == 0)
        return FS_FILE_NOTSUPPORTED;
    return UsePhone(FS_FILE_WRITEERROR, [&](Operation&) {
        if ((bOverWrite & kHostFlagMask) == 0) {
            const int iResult = CheckTargetIsFree(sNewPath);
            if (iResult != FS_FILE_OK)
                return iResult;
        }
        return Rename(sOldPath, sNewPath);
    });
}

BOOL HOST_CALL FsSetAttr(char* sRemoteName, int) {
    return Decline(sRemoteName);
}

BOOL HOST_CALL FsSetTime(char* sRemoteName, FILETIME*, FILETIME*, FILETIME*) {
    return Decline(sRemoteName);
}
