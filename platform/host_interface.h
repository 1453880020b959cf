// The file manager's plug-in interface: callbacks, records and numbers, under their published names.
#pragma once

#include "system/host.h"

using tProgressProc = int(HOST_CALL*)(int iPluginNumber, char* sSourceName, char* sTargetName, int iPercent);
using tLogProc = void(HOST_CALL*)(int iPluginNumber, int iMessageType, char* sText);
using tRequestProc = BOOL(HOST_CALL*)(int iPluginNumber, int iRequestType, char* sTitle, char* sText,
                                      char* sReturnedText, int iMaxLength);

/// The properties of a remote file.
struct RemoteInfoStruct {
    DWORD SizeLow;
    DWORD SizeHigh;
    FILETIME LastWriteTime;
    int Attr;
};

constexpr int FS_FILE_OK = 0;
constexpr int FS_FILE_EXISTS = 1;
constexpr int FS_FILE_NOTFOUND = 2;
constexpr int FS_FILE_READERROR = 3;
constexpr int FS_FILE_WRITEERROR = 4;
constexpr int FS_FILE_USERABORT = 5;
constexpr int FS_FILE_NOTSUPPORTED = 6;
constexpr int FS_FILE_EXISTSRESUMEALLOWED = 7;

constexpr int FS_COPYFLAGS_OVERWRITE = 1;
constexpr int FS_COPYFLAGS_RESUME = 2;
constexpr int FS_COPYFLAGS_MOVE = 4;

constexpr int FS_EXEC_OK = 0;
constexpr int FS_EXEC_ERROR = 1;
constexpr int FS_EXEC_YOURSELF = -1;
constexpr int FS_EXEC_SYMLINK = -2;

constexpr int FS_STATUS_START = 0;
constexpr int FS_STATUS_END = 1;

constexpr int FS_STATUS_OP_LIST = 1;
constexpr int FS_STATUS_OP_GET_SINGLE = 2;
constexpr int FS_STATUS_OP_GET_MULTI = 3;
constexpr int FS_STATUS_OP_PUT_SINGLE = 4;
constexpr int FS_STATUS_OP_PUT_MULTI = 5;
constexpr int FS_STATUS_OP_RENMOV_SINGLE = 6;
constexpr int FS_STATUS_OP_DELETE = 8;
constexpr int FS_STATUS_OP_MKDIR = 10;
constexpr int FS_STATUS_OP_EXEC = 11;

constexpr int MSGTYPE_CONNECT = 1;
constexpr int MSGTYPE_DISCONNECT = 2;
constexpr int MSGTYPE_DETAILS = 3;
constexpr int MSGTYPE_IMPORTANTERROR = 6;

constexpr int RT_MsgOK = 8;
