// The functions that the file manager finds by name: its file-system plug-in interface.
//
// The host may call them from any of its threads, and from within its own callbacks (see plugin/operation.h).
// They also work before FsInit, but then report nothing to the host.
//
// A call that fails, and one whose removal or link the phone refuses, logs one line of type
// MSGTYPE_IMPORTANTERROR to the host when it ends: "WHAT: /PATH: REASON", such as "delete: /a: the phone
// refused it: permission denied (13)". A user's abort and an existing target are not failures. FsSetAttr,
// FsSetTime and FsDisconnect log no such line.
//
// Paths are zero-terminated, in the host's encoding, and shorter than 1024 bytes. The separator is '/' or
// '\', and the plug-in's root is "/" or "\". The phone receives the same bytes. A phone path that is null or
// longer fails the call before anything is sent. Phone paths of type `char*` are changed in place where hosts
// allow it (kEntryPointsChangePaths).
#pragma once

#include "platform/export.h"
#include "platform/host_interface.h"

// --- Connection (init.cpp) ------------------------------------------------------------------------------

/// FsInit stores the callbacks of the host (any may be null) and opens the connection. Where a banner is
/// shown, it takes at least a second. Always returns 0. It changes nothing while a callback of the host is
/// running.
QUILLET_C_API int HOST_CALL FsInit(int iPluginNumber, tProgressProc pfnProgress, tLogProc pfnLog,
                                   tRequestProc pfnRequest);

/// FsGetDefRootName writes the name of the root, truncated to iSize bytes including the zero.
QUILLET_C_API void HOST_CALL FsGetDefRootName(char* sRootName, int iSize);

/// FsStatusInfo opens or checks the connection at FS_STATUS_START and disables the idle close until
/// FS_STATUS_END. The directory and the operation are ignored.
QUILLET_C_API void HOST_CALL FsStatusInfo(char* sRemoteDir, int iStartEnd, int iOperation);

/// FsDisconnect closes the connection, if any, and returns 1. While a callback of the host is running, which
/// may belong to a transfer, it closes nothing and returns 0.
QUILLET_C_API BOOL HOST_CALL FsDisconnect(char* sDisconnectRoot);

// --- Listing (find_files.cpp) ---------------------------------------------------------------------------

/// FsFindFirst lists a whole folder and fills in the record of its first entry. Returns a new handle for
/// FsFindNext and FsFindClose, or the handle -1. The thread's last error is then kErrorNoMoreFiles when the
/// folder is empty, cannot be listed, or is the phone's settings folder ("nvm"); it is unchanged when no
/// phone answers.
QUILLET_C_API HANDLE HOST_CALL FsFindFirst(char* sPath, WIN32_FIND_DATAA* pFindData);

/// FsFindNext fills in the record of the listing's next entry and returns 1, or 0 after the last one. An
/// unknown handle continues the last listing.
QUILLET_C_API BOOL HOST_CALL FsFindNext(HANDLE hListing, WIN32_FIND_DATAA* pFindData);

/// FsFindClose releases a handle. Always returns 0.
QUILLET_C_API int HOST_CALL FsFindClose(HANDLE hListing);

// --- Transfers (transfer.cpp) ---------------------------------------------------------------------------
// Only one transfer runs at a time: a second one, requested from within a callback or by another thread,
// fails with FS_FILE_WRITEERROR. When the user aborts, the result is FS_FILE_USERABORT, the partial copy is
// removed, and the source stays.

/// FsGetFile copies a phone file to the PC. With FS_COPYFLAGS_MOVE it then deletes the file on the phone,
/// provided that as many bytes arrived as the phone announced (otherwise FS_FILE_READERROR, and both files
/// stay). Without overwrite or resume, an existing local file stays: FS_FILE_EXISTSRESUMEALLOWED. A download
/// that fails on the way leaves the part that arrived: FS_FILE_WRITEERROR.
QUILLET_C_API int HOST_CALL FsGetFile(char* sRemoteName, char* sLocalName, int iCopyFlags,
                                      RemoteInfoStruct* pRemoteInfo);

/// FsPutFile copies a local file to the phone; the local file always stays. Without overwrite or resume, an
/// existing phone file stays: FS_FILE_EXISTSRESUMEALLOWED, or FS_FILE_NOTFOUND when the phone did not report
/// whether it exists (only error number 2 means that it does not). A failed upload leaves nothing on the
/// phone, but a file whose writing never began is unchanged.
QUILLET_C_API int HOST_CALL FsPutFile(char* sLocalName, char* sRemoteName, int iCopyFlags);

// --- Files and folders (file_operations.cpp) ------------------------------------------------------------
// They return 1 when the phone answered. Only FsMkDir returns 0 when the phone refused.

QUILLET_C_API BOOL HOST_CALL FsDeleteFile(char* sRemoteName);
/// FsMkDir: where hosts want it (see platform), a folder that exists afterwards counts as made, even if the
/// request was refused or its response was lost.
QUILLET_C_API BOOL HOST_CALL FsMkDir(char* sPath);
QUILLET_C_API BOOL HOST_CALL FsRemoveDir(char* sRemoteName);

/// FsRenMovFile renames or moves within the phone. It replaces an existing target only with bOverWrite
/// (otherwise FS_FILE_EXISTS, or FS_FILE_READERROR when the phone did not report whether it exists). It does
/// not open or check the connection. A copy (bMove 0) returns FS_FILE_NOTSUPPORTED.
QUILLET_C_API int HOST_CALL FsRenMovFile(char* sOldName, char* sNewName, BOOL bMove, BOOL bOverWrite,
                                         RemoteInfoStruct* pRemoteInfo);

/// FsSetAttr and FsSetTime always return 0 and send nothing: the phone has no attributes or times that a host
/// could set.
QUILLET_C_API BOOL HOST_CALL FsSetAttr(char* sRemoteName, int iNewAttr);
QUILLET_C_API BOOL HOST_CALL FsSetTime(char* sRemoteName, FILETIME* pCreation, FILETIME* pLastAccess,
                                       FILETIME* pLastWrite);

// --- Execute verbs (execute.cpp) ------------------------------------------------------------------------

/// FsExecuteFile runs a verb. It does not open or check the connection.
///   hMainWindow  the host's window, or null; owner of the message box
///   sRemoteName  the host's buffer of MAX_PATH bytes; for "quote " the current folder, with a separator at
///                its end; changed in place
///   sVerb        "open"        FS_EXEC_SYMLINK for a link to a folder, whose path is then in sRemoteName;
///                              otherwise FS_EXEC_YOURSELF
///                "properties"  shows the properties and returns when the user has closed them; for the root
///                              as "\", shows the banner, where there is one, for two seconds: FS_EXEC_OK
///                "quote ..."   a typed command: "cd FOLDER" (FS_EXEC_SYMLINK with the new path in
///                              sRemoteName, without "." and ".."; a leading '/' is the phone's root) or
///                              "ln TARGET NAME"; others are ignored
///                others        FS_EXEC_OK, nothing is done
/// A path that is written back uses the separator of sRemoteName. FS_EXEC_ERROR: the path is not on the
/// phone, the result does not fit sRemoteName (which is then no longer than before), an argument is longer
/// than the phone accepts, or the name or the verb is invalid.
QUILLET_C_API int HOST_CALL FsExecuteFile(HWND hMainWindow, char* sRemoteName, char* sVerb);
