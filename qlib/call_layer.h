// The flat call layer: the library as plain functions on context handles.
//
// A context handle represents one COM port (QLib_ResourceManager). Every function looks the handle up and
// forwards to one method of its connection. For an unknown handle it returns false and changes nothing. Calls
// must come from one thread at a time. Out-values are written only when a response arrived.
#pragma once

#include "diag/operation_failure.h"
#include "efs2/callbacks.h"
#include "efs2/directory_entry.h"
#include "link/event_listener.h"
#include "platform/export.h"
#include "platform/port_error.h"
#include "platform/types.h"
#include "portserver/software_download.h"

/// QLIB_SetQpstMode: 1 selects port-server mode, anything else the serial port. Process-wide; set it
/// before contexts are made.
QUILLET_C_API void QLIB_SetQpstMode(unsigned char iMode);

/// QLIB_ConnectPort makes (or finds) the context of a COM port (0xFFFF: the first on which a phone answers)
/// and opens the port. Returns the handle even when the port could not be opened (call
/// QLIB_IsPhoneConnected); null when no context could be made. Each call needs its own QLIB_DisconnectPort.
QUILLET_C_API void* QLIB_ConnectPort(unsigned short iComPort);

/// QLIB_DisconnectPort closes the port and drops one reference to the context.
QUILLET_C_API void QLIB_DisconnectPort(void* hContext);

/// QLIB_IsPhoneConnected: true when the phone answers now (Diag_FTM::IsPhoneConnected).
QUILLET_C_API bool QLIB_IsPhoneConnected(void* hContext);

/// QLIB_GetPortError is DiagConnection::GetPortError; None for an unknown handle.
QUILLET_C_API PortError QLIB_GetPortError(void* hContext);

/// QLIB_ConfigureCallBacks registers the callbacks that are not null, with the handle as user data. The first
/// two belong to the context's port-server clients, which exist only in port-server mode.
QUILLET_C_API void QLIB_ConfigureCallBacks(void* hContext, EfsDirectoryCallBack pfnEfs,
                                           SoftwareDownloadCallBack pfnSoftwareDownload,
                                           AsyncMessageCallBack pfnAsyncMessage);

/// QLIB_ConfigureEfsCallbacks registers the transfer and the directory callback (null: none).
QUILLET_C_API void QLIB_ConfigureEfsCallbacks(void* hContext, EfsTransferCallBack pfnTransfer,
                                              EfsDirectoryCallBack pfnDirectory);

/// QLIB_DIAG_GET_FILE_ATTRIBUTES is FileAttributes::DIAG_GET_FILE_ATTRIBUTES.
QUILLET_C_API bool QLIB_DIAG_GET_FILE_ATTRIBUTES(void* hContext, const char* sPath, DWORD* piFirst,
                                                 DWORD* piSecond, DWORD* piThird);

/// QLIB_EFS2_DIAG_ABORT stops the running transfer before its next block.
QUILLET_C_API bool QLIB_EFS2_DIAG_ABORT(void* hContext);

/// QLIB_EfsDirectory lists a phone directory through the directory callback.
QUILLET_C_API bool QLIB_EfsDirectory(void* hContext, const char* sFolderPath);

/// QLIB_EfsRead copies a phone file to a local file, QLIB_EfsWrite the other way: source first. QLIB_EfsRead
/// with a null or empty sLocalFile uses the phone file's own name in the current directory.
QUILLET_C_API bool QLIB_EfsRead(void* hContext, const char* sEFS_File, const char* sLocalFile);
QUILLET_C_API bool QLIB_EfsWrite(void* hContext, const char* sLocalFile, const char* sEFS_File);

/// QLIB_EfsWriteOpenedTarget is Efs2Transfer::EFS2_LastWriteOpenedTarget.
QUILLET_C_API bool QLIB_EfsWriteOpenedTarget(void* hContext);

/// QLIB_EfsLastFailure is Efs2Metadata::EFS2_LastFailure.
QUILLET_C_API bool QLIB_EfsLastFailure(void* hContext, OperationFailure* pFailure);

/// QLIB_EFS2_DIAG_UNLINK, QLIB_EFS2_DIAG_MKDIR, QLIB_EFS2_DIAG_RMDIR are the operations of Efs2Metadata.
QUILLET_C_API bool QLIB_EFS2_DIAG_UNLINK(void* hContext, const char* sFilePath);
QUILLET_C_API bool QLIB_EFS2_DIAG_MKDIR(void* hContext, const char* sDir);
QUILLET_C_API bool QLIB_EFS2_DIAG_RMDIR(void* hContext, const char* sFolderPath);

/// QLIB_EFS2_DIAG_READ_LINK: sPointedFilePath has at least 512 bytes and holds a zero-terminated text.
QUILLET_C_API bool QLIB_EFS2_DIAG_READ_LINK(void* hContext, const char* sFilePath, char* sPointedFilePath);

/// QLIB_EFS2_DIAG_CREATE_LINK makes sFilePath a link to sPointedFilePath.
QUILLET_C_API bool QLIB_EFS2_DIAG_CREATE_LINK(void* hContext, const char* sFilePath,
                                              const char* sPointedFilePath);

/// QLIB_EFS2_DIAG_RENAME is Efs2Metadata::EFS2_DIAG_RENAME.
QUILLET_C_API bool QLIB_EFS2_DIAG_RENAME(void* hContext, const char* sOldFilePath, const char* sNewFilePath,
                                         DWORD* piErrorNo);

/// QLIB_EFS2_DIAG_STAT is Efs2Metadata::EFS2_DIAG_STAT.
QUILLET_C_API bool QLIB_EFS2_DIAG_STAT(void* hContext, const char* sFilePath, DWORD* piErrorNo, DWORD* piMode,
                                       DWORD* piSize, DWORD* piNlink, DWORD* piAtime, DWORD* piMtime,
                                       DWORD* piCtime);

/// QLIB_EFS2_DIAG_STATFS is Efs2Metadata::EFS2_DIAG_STATFS.
QUILLET_C_API bool QLIB_EFS2_DIAG_STATFS(void* hContext, const char* sFilePath, DWORD* piErrorNo,
                                         DWORD* piFS_ID, DWORD* piFS_Type, DWORD* piBlockSize,
                                         DWORD* piTotalBlocks, DWORD* piAvailBlocks, DWORD* piFreeBlocks,
                                         DWORD* piMaxFileSize, DWORD* piNfiles, DWORD* piMaxNfiles);

/// QLIB_EFS2_DIAG_... are the operations of Efs2OpenFiles and Efs2OpenDirectories: files and directories as
/// open objects.
QUILLET_C_API bool QLIB_EFS2_DIAG_OPEN(void* hContext, const char* sFilePath, DWORD iFlags, DWORD iMode,
                                       LONG* piDescriptor, DWORD* piErrorNo);
QUILLET_C_API bool QLIB_EFS2_DIAG_READ(void* hContext, LONG iDescriptor, DWORD iOffset, unsigned char* pData,
                                       DWORD iSize, DWORD* piBytesRead, DWORD* piErrorNo);
QUILLET_C_API bool QLIB_EFS2_DIAG_WRITE(void* hContext, LONG iDescriptor, DWORD iOffset,
                                        const unsigned char* pData, DWORD iSize, DWORD* piBytesWritten,
                                        DWORD* piErrorNo);
QUILLET_C_API bool QLIB_EFS2_DIAG_CLOSE(void* hContext, LONG iDescriptor, DWORD* piErrorNo);
QUILLET_C_API bool QLIB_EFS2_DIAG_OPENDIR(void* hContext, const char* sFolderPath, DWORD* piDirectory,
                                          DWORD* piErrorNo);
QUILLET_C_API bool QLIB_EFS2_DIAG_READDIR(void* hContext, DWORD iDirectory, DWORD iSequence,
                                          Efs2DirEntry* pEntry, DWORD* piErrorNo);
QUILLET_C_API bool QLIB_EFS2_DIAG_CLOSEDIR(void* hContext, DWORD iDirectory, DWORD* piErrorNo);

/// QLIB_EFS2_DIAG_... are the operations of Efs2Names: names made and removed, with the phone's verdict.
QUILLET_C_API bool QLIB_EFS2_DIAG_MAKE_DIRECTORY(void* hContext, const char* sFolderPath, DWORD iMode,
                                                 DWORD* piErrorNo);
QUILLET_C_API bool QLIB_EFS2_DIAG_REMOVE_DIRECTORY(void* hContext, const char* sFolderPath, DWORD* piErrorNo);
QUILLET_C_API bool QLIB_EFS2_DIAG_REMOVE_FILE(void* hContext, const char* sFilePath, DWORD* piErrorNo);
QUILLET_C_API bool QLIB_EFS2_DIAG_MAKE_LINK(void* hContext, const char* sFilePath,
                                            const char* sPointedFilePath, DWORD* piErrorNo);
QUILLET_C_API bool QLIB_EFS2_DIAG_LINK_TARGET(void* hContext, const char* sFilePath, char* sPointedFilePath,
                                              DWORD* piErrorNo);
