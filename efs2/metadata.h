// Queries and changes of the phone's file system that do not move file contents.
#pragma once

#include <string>

#include "diag/operation_failure.h"
#include "platform/export.h"
#include "platform/types.h"

enum EFS2_Cmd_Enum : unsigned short;

class CommandFrame;

/// The query of EFS2_DIAG_EXTENDED_INFO, passed to the phone unchanged; every value is allowed.
enum EFS2_EXT_QueryType_Enum : int {};

/// The kind of its result.
enum EFS2_EXT_Kind_Enum : int {
    EFS2_EXT_KIND_INT = 0,
    EFS2_EXT_KIND_STRING = 1,
};

/// Efs2Metadata: each operation is one request and its response, within QMSL_TimeOut_SyncRequest (MKDIR and
/// the free-space query: 2000 ms). Caller's thread. The frame must outlive it.
///
/// Paths are zero-terminated 8-bit texts, sent exactly as given; never null. A path that does not fit in a
/// request (MKDIR: more than 249 characters; the others: together more than about 4090) is not sent, and the
/// result is false.
///
/// True means that the phone answered. Whether it granted the request is in iErrorNo (0: yes). RMDIR, UNLINK,
/// READ_LINK and CREATE_LINK have no iErrorNo and do not report it. Without a response the result is false
/// and no out-value changes. RENAME, CHMOD and ACCESS take the error number from the last four bytes of the
/// response. Other responses that are too short for a value leave it unchanged. A response that ends within
/// its header (4 bytes) changes nothing; operations that read values are then false.
///
/// Each text needs kEfs2TextSize bytes of the caller's buffer, the terminating zero included; longer texts
/// are cut, missing ones are empty.
class QUILLET_API Efs2Metadata {
public:
    static constexpr size_t kEfs2TextSize = 512; // the bytes in each text buffer

    explicit Efs2Metadata(CommandFrame& frame) : m_frame(frame) {}

    /// EFS2_DIAG_MKDIR makes a directory with all permissions for everyone. True only when the phone made it.
    bool EFS2_DIAG_MKDIR(const char* strDir);
    /// EFS2_DIAG_RMDIR requests the removal of a directory (phones remove only empty ones).
    bool EFS2_DIAG_RMDIR(const char* sFolderPath);
    /// EFS2_DIAG_UNLINK requests the removal of a file or link.
    bool EFS2_DIAG_UNLINK(const char* sFilePath);
    /// EFS2_DIAG_RENAME renames or moves. iErrorNo on entry is only logged.
    bool EFS2_DIAG_RENAME(const char* sOldFilePath, const char* sNewFilePath, DWORD& iErrorNo);

    /// EFS2_DIAG_STAT reads an entry's status, following links: POSIX mode bits, size in bytes, link count,
    /// times in seconds on the phone's own scale. A response that lacks one of the seven values changes none.
    bool EFS2_DIAG_STAT(const char* sFilePath, DWORD& iErrorNo, DWORD& iMode, DWORD& iSize, DWORD& iNlink,
                        DWORD& iAtime, DWORD& iMtime, DWORD& iCtime);

    /// EFS2_DIAG_STATFS reads the status of the file system that holds a path: block size and largest file in
    /// bytes, other sizes in blocks, numbers of files. Phones send the type in 8 bytes, and iFS_Type is its
    /// low half; a response of exactly 44 bytes has a type of 4. False also for a response without an error
    /// number.
    bool EFS2_DIAG_STATFS(const char* sFilePath, DWORD& iErrorNo, DWORD& iFS_ID, DWORD& iFS_Type,
                          DWORD& iBlockSize, DWORD& iTotalBlocks, DWORD& iAvailBlocks, DWORD& iFreeBlocks,
                          DWORD& iMaxFileSize, DWORD& iNfiles, DWORD& iMaxNfiles);

    /// EFS2_DIAG_CHMOD sets the permission bits.
    bool EFS2_DIAG_CHMOD(DWORD iMode, const char* sFilePath, DWORD& iErrorNo);
    /// EFS2_DIAG_ACCESS tests whether a path can be reached. The permission bits are logged, not sent.
    bool EFS2_DIAG_ACCESS(DWORD iPermissionBits, const char* sFilePath, DWORD& iErrorNo);

    /// EFS2_DIAG_DEV_INFO reads the properties of the flash chip; page sizes in bytes. psDeviceName:
    /// kEfs2TextSize bytes.
    bool EFS2_DIAG_DEV_INFO(DWORD& iErrorNo, DWORD& iTotalNumOfBlocks, DWORD& iNumPagesPerBlock,
                            DWORD& iPageSize, DWORD& iTotalPageSize, DWORD& iMakerId, DWORD& iDeviceId,
                            unsigned char& iDeviceType, char* psDeviceName);

    /// EFS2_DIAG_READ_LINK reads the target of a link. sPointedFilePath has kEfs2TextSize bytes. On entry it
    /// holds a zero-terminated text (which is logged); afterwards it is empty when the phone refused.
    bool EFS2_DIAG_READ_LINK(const char* sFilePath, char* sPointedFilePath);
    /// EFS2_DIAG_CREATE_LINK makes the link sFilePath that points to sPointedFilePath.
    bool EFS2_DIAG_CREATE_LINK(const char* sFilePath, const char* sPointedFilePath);

    /// EFS2_DIAG_EXTENDED_INFO sends a phone-specific query. eReturnKind selects iReturnInt or sReturnString
    /// (kEfs2TextSize bytes) for the result; the other one stays unchanged. False also when the result is of
    /// neither kind or is too short for its number; then nothing changes.
    bool EFS2_DIAG_EXTENDED_INFO(EFS2_EXT_QueryType_Enum iQueryType, EFS2_EXT_Kind_Enum& eReturnKind,
                                 DWORD& iReturnInt, char* const sReturnString);

    /// EFS2_LastFailure says why the connection's last file-system operation (of this and the other EFS2
    /// families) failed or was refused. Of several things that went wrong it is the first.
    OperationFailure EFS2_LastFailure() const;

protected:
    /// EfsFnSplit splits a path after its last '/': "/brew/a.txt" is "/brew/" and "a.txt". Without a '/',
    /// sDir is empty. Each buffer must be large enough for the whole path.
    static void EfsFnSplit(std::string sPath, char* sDir, char* sName);
    /// EfsIsLegalName: at most 128 characters in total and 80 in the last name. No operation calls it.
    static bool EfsIsLegalName(std::string sPath);

private:
    friend class Efs2Transfer;

    static constexpr DWORD kPathTooLong = 0xFFFFFFFF;

    /// The bytes available to the caller on the file system of sPath, modulo 2^32; 0 without a response,
    /// kPathTooLong when the path has more than 251 characters.
    DWORD StatFSAvailSpace(const char* sPath);

    bool SendPath(EFS2_Cmd_Enum eCommand, const char* sPath);
    bool AskOfPath(EFS2_Cmd_Enum eCommand, const char* sPath);
    bool TakeErrorNo(DWORD& iErrorNo);

    CommandFrame& m_frame;
};
