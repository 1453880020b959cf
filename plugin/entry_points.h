// The functions that the file manager finds by name: its file-system plug-in interface.
//
// The host calls them from any of its threads, also from inside its own callbacks; plugin/operation.h tells
// how they get along. They work before FsInit too: then nothing is reported to the host.
//
// A call that fails, and one whose removal or link the phone refuses, adds one line of type
// MSGTYPE_IMPORTANTERROR to the host's log, when it is over: "WHAT: /PATH: REASON", such as "delete: /a: the
// phone refused it: permission denied (13)". A user's abort and an existing target are no failures.
// FsSetAttr, FsSetTime and FsDisconnect have no such line.
//
// Paths are zero-terminated, in the host's encoding, shorter than 1024 bytes, with '/' or '\' as separator
// and the plug-in's root as "/" or "\"; the phone sees the same bytes. A phone path that is null or longer
// fails the call before anything is sent. Phone paths that are `char*` are changed in place
// where the host lets them be (kEntryPointsChangePaths).
#pragma once

#include "platform/export.h"
#include "platform/host_interface.h"

// --- Connection (init.cpp) ------------------------------------------------------------------------------

/// FsInit takes the host's callbacks (any may be null) and opens the connection; where a banner shows, it
/// takes at least a second. Always 0. While a callback of the host is running it changes nothing.
QUILLET_C_API int HOST_CALL FsInit(int iPluginNumber, tProgressProc pfnProgress, tLogProc pfnLog,
                                   tRequestProc pfnRequest);

/// FsGetDefRootName writes the root's name, cut to what iSize bytes hold with their zero.
QUILLET_C_API void HOST_CALL FsGetDefRootName(char* sRootName, int iSize);

/// FsStatusInfo: FS_STATUS_START opens or checks the connection and keeps it from closing when idle until
/// FS_STATUS_END. Directory and operation are not looked at.
QUILLET_C_API void HOST_CALL FsStatusInfo(char* sRemoteDir, int iStartEnd, int iOperation);

/// FsDisconnect closes the connection, if there is one: 1. While a callback of the host is running (a
/// transfer may stand behind it) it closes nothing: 0.
QUILLET_C_API BOOL HOST_CALL FsDisconnect(char* sDisconnectRoot);

// --- Listing (find_files.cpp) ---------------------------------------------------------------------------

/// FsFindFirst lists a folder whole and fills the record of its first entry. Returns a handle of its own for
/// FsFindNext and FsFindClose, or the handle -1: with kErrorNoMoreFiles as the thread's last error when the
/// folder is empty, cannot be listed, or is the phone's settings folder ("nvm"), with the last error left
/// alone when no phone answers.
QUILLET_C_API HANDLE HOST_CALL FsFindFirst(char* sPath, WIN32_FIND_DATAA* pFindData);

/// FsFindNext fills the record of the listing's next entry: 1, or 0 after the last. A handle that is not
/// known walks the last listing.
QUILLET_C_API BOOL HOST_CALL FsFindNext(HANDLE hListing, WIN32_FIND_DATAA* pFindData);

/// FsFindClose gives a handle back. Always 0.
QUILLET_C_API int HOST_CALL FsFindClose(HANDLE hListing);

// --- Transfers (transfer.cpp) ---------------------------------------------------------------------------
// One at a time: a second one that the host asks for from inside a callback, or from another thread
// meanwhile, fails with FS_FILE_WRITEERROR. A user's abort gives FS_FILE_USERABORT; then nothing is left of
// the copy and the source stays.

/// FsGetFile copies a phone file to the PC, and with FS_COPYFLAGS_MOVE deletes it on the phone once it is
/// there whole: when the bytes that arrived are as many as the phone announced (otherwise FS_FILE_READERROR,
/// and both files stay). Without overwrite or resume an existing local file stays:
/// FS_FILE_EXISTSRESUMEALLOWED. A download that fails on the way leaves the part that arrived:
/// FS_FILE_WRITEERROR.
QUILLET_C_API int HOST_CALL FsGetFile(char* sRemoteName, char* sLocalName, int iCopyFlags,
                                      RemoteInfoStruct* pRemoteInfo);

/// FsPutFile copies a local file to the phone; the local file always stays. Without overwrite or resume an
/// existing phone file stays: FS_FILE_EXISTSRESUMEALLOWED (FS_FILE_NOTFOUND: the phone did not say; only its
/// error number 2 says that nothing is there). Of an
/// upload that fails nothing is left on the phone, but a file whose writing never began stays as it was.
QUILLET_C_API int HOST_CALL FsPutFile(char* sLocalName, char* sRemoteName, int iCopyFlags);

// --- Files and folders (file_operations.cpp) ------------------------------------------------------------
// 1 when the phone took the request; it tells a refusal of FsMkDir only.

QUILLET_C_API BOOL HOST_CALL FsDeleteFile(char* sRemoteName);
/// FsMkDir: where the host wants it so (platform), a folder that the phone then reports counts as made, also
/// when the request was refused or its answer lost.
QUILLET_C_API BOOL HOST_CALL FsMkDir(char* sPath);
QUILLET_C_API BOOL HOST_CALL FsRemoveDir(char* sRemoteName);

/// FsRenMovFile renames or moves within the phone, over an existing target with bOverWrite only
/// (FS_FILE_EXISTS; FS_FILE_READERROR: the phone did not say). It uses the connection as it is. A copy (bMove
/// 0) is FS_FILE_NOTSUPPORTED.
QUILLET_C_API int HOST_CALL FsRenMovFile(char* sOldName, char* sNewName, BOOL bMove, BOOL bOverWrite,
                                         RemoteInfoStruct* pRemoteInfo);

/// The phone has no attributes or times that the host could set: always 0, and nothing is sent.
QUILLET_C_API BOOL HOST_CALL FsSetAttr(char* sRemoteName, int iNewAttr);
QUILLET_C_API BOOL HOST_CALL FsSetTime(char* sRemoteName, FILETIME* pCreation, FILETIME* pLastAccess,
                                       FILETIME* pLastWrite);

// --- Execute verbs (execute.cpp) ------------------------------------------------------------------------

/// FsExecuteFile carries out what is no plain file command. It uses the connection as it is.
///   hMainWindow  the host's window, or null; a message box stands before it
///   sRemoteName  the host's buffer of MAX_PATH bytes; for "quote " the current folder, with a separator at
///                its end, which is changed in place
///   sVerb        "open"        FS_EXEC_SYMLINK for a link to a folder, with the folder's path in
///   sRemoteName;
///                              FS_EXEC_YOURSELF otherwise
///                "properties"  shows them and returns when the user has seen them; for the root as "\", the
///                              banner, where there is one, for two seconds: FS_EXEC_OK
///                "quote ..."   a typed command: "cd FOLDER" (FS_EXEC_SYMLINK with the new path in
///                              sRemoteName, without "." and ".."; a '/' in front means the phone's root)
///                              or "ln TARGET NAME"; others are accepted silently
///                others        FS_EXEC_OK, nothing done
/// A path written back has the separator that the name came in with. FS_EXEC_ERROR: the phone does not know
/// the path, the result does not fit sRemoteName (which is then no longer than before), an argument is longer
/// than the phone takes, or name or verb cannot be used.
QUILLET_C_API int HOST_CALL FsExecuteFile(HWND hMainWindow, char* sRemoteName, char* sVerb);
