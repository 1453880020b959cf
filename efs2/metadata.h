// What can be asked and changed on the phone's file system without moving file contents.
#pragma once

#include <string>

#include "diag/operation_failure.h"
#include "platform/export.h"
#include "platform/types.h"

enum EFS2_Cmd_Enum : unsigned short;

class CommandFrame;

/// What EFS2_DIAG_EXTENDED_INFO asks for: passed to the phone unchanged, every value is allowed.
enum EFS2_EXT_QueryType_Enum : int {};

/// How the phone answered it.
enum EFS2_EXT_Kind_Enum : int {
    EFS2_EXT_KIND_INT = 0,
    EFS2_EXT_KIND_STRING = 1,
};

/// Efs2Metadata: each operation is one request and its answer, within QMSL_TimeOut_SyncRequest (MKDIR and
/// the free-space query: 2000 ms). Caller's thread. The frame must outlive it.
///
/// Paths are zero-terminated 8-bit texts, sent exactly as given; never null. Paths that do not fit in a
/// request (MKDIR: more than 249 characters; the others: together more than about 4090) are not sent, and the
/// result is false.
///
/// True means that the phone answered. Whether it granted the request shows in iErrorNo (0: yes) where there
/// is one; RMDIR, UNLINK, READ_LINK and CREATE_LINK do not tell. Without an answer the result is false and
/// no out-value changes. The answers to RENAME, CHMOD and ACCESS are read from their end: the last four bytes
/// are the error number. Other answers that are too short for a value leave it as it was. An answer that ends
/// within its header (4 bytes) changes nothing, and what reads values is false then.
///
/// Texts that are handed out take up to kEfs2TextSize bytes of the caller's buffer, the zero included; longer
/// ones are cut, missing ones are empty.
class QUILLET_API Efs2Metadata {
public:
    static constexpr size_t kEfs2TextSize = 512;

    explicit Efs2Metadata(CommandFrame& frame) : m_frame(frame) {}

    /// EFS2_DIAG_MKDIR makes a directory for everybody's use. True only when the phone made it.
    bool EFS2_DIAG_MKDIR(const char* strDir);
    /// EFS2_DIAG_RMDIR asks for the removal of a directory (the phone removes empty ones alone).
    bool EFS2_DIAG_RMDIR(const char* sFolderPath);
    /// EFS2_DIAG_UNLINK asks for the removal of a file or link.
    bool EFS2_DIAG_UNLINK(const char* sFilePath);
    /// EFS2_DIAG_RENAME renames or moves. iErrorNo on entry is only logged.
    bool EFS2_DIAG_RENAME(const char* sOldFilePath, const char* sNewFilePath, DWORD& iErrorNo);

    /// EFS2_DIAG_STAT tells of an entry, links followed: POSIX mode bits, size in bytes, link count, times as
    /// the phone counts them (seconds). An answer that lacks one of the seven values changes none.
    bool EFS2_DIAG_STAT(const char* sFilePath, DWORD& iErrorNo, DWORD& iMode, DWORD& iSize, DWORD& iNlink,
                        DWORD& iAtime, DWORD& iMtime, DWORD& iCtime);

    /// EFS2_DIAG_STATFS tells of the file system that holds a path: block size and largest file in bytes, the
    /// other sizes in blocks, files in numbers. Phones send the type in 8 bytes, of which iFS_Type is the low
    /// half; an answer of exactly 44 bytes has a type of 4. An answer without an error number counts as none.
    bool EFS2_DIAG_STATFS(const char* sFilePath, DWORD& iErrorNo, DWORD& iFS_ID, DWORD& iFS_Type,
                          DWORD& iBlockSize, DWORD& iTotalBlocks, DWORD& iAvailBlocks, DWORD& iFreeBlocks,
                          DWORD& iMaxFileSize, DWORD& iNfiles, DWORD& iMaxNfiles);

    /// EFS2_DIAG_CHMOD sets the permission bits.
    bool EFS2_DIAG_CHMOD(DWORD iMode, const char* sFilePath, DWORD& iErrorNo);
    /// EFS2_DIAG_ACCESS asks whether a path can be reached; the permission bits are logged, not sent.
    bool EFS2_DIAG_ACCESS(DWORD iPermissionBits, const char* sFilePath, DWORD& iErrorNo);

    /// EFS2_DIAG_DEV_INFO tells of the flash chip; page sizes in bytes. psDeviceName: kEfs2TextSize bytes.
    bool EFS2_DIAG_DEV_INFO(DWORD& iErrorNo, DWORD& iTotalNumOfBlocks, DWORD& iNumPagesPerBlock,
                            DWORD& iPageSize, DWORD& iTotalPageSize, DWORD& iMakerId, DWORD& iDeviceId,
                            unsigned char& iDeviceType, char* psDeviceName);

    /// EFS2_DIAG_READ_LINK tells where a link points. sPointedFilePath: kEfs2TextSize bytes, which hold a
    /// zero-terminated text on entry (it is logged); empty afterwards when the phone refused.
    bool EFS2_DIAG_READ_LINK(const char* sFilePath, char* sPointedFilePath);
    /// EFS2_DIAG_CREATE_LINK makes the link sFilePath that points to sPointedFilePath.
    bool EFS2_DIAG_CREATE_LINK(const char* sFilePath, const char* sPointedFilePath);

    /// EFS2_DIAG_EXTENDED_INFO asks the phone a question of its own. The answer is in iReturnInt or in
    /// sReturnString (kEfs2TextSize bytes), by eReturnKind; the other one is left alone. False also when the
    /// answer is of neither kind or ends before its number; then nothing is changed.
    bool EFS2_DIAG_EXTENDED_INFO(EFS2_EXT_QueryType_Enum iQueryType, EFS2_EXT_Kind_Enum& eReturnKind,
                                 DWORD& iReturnInt, char* const sReturnString);

    /// EFS2_LastFailure says why the connection's last file-system operation (of this and the other EFS2
    /// families) failed or was refused. Of several things that went wrong it is the first.
    OperationFailure EFS2_LastFailure() const;

protected:
    /// EfsFnSplit splits a path behind its last '/': "/brew/a.txt" is "/brew/" and "a.txt". Without one, sDir
    /// is empty. Each buffer is large enough for the whole path.
    static void EfsFnSplit(std::string sPath, char* sDir, char* sName);
    /// EfsIsLegalName: at most 128 characters in all and 80 in the last name. No operation asks for it.
    static bool EfsIsLegalName(std::string sPath);

private:
    friend class Efs2Transfer;

    static constexpr DWORD kPathTooLong = 0xFFFFFFFF;

    /// Free bytes for the caller on the file system of sPath, modulo 2^32; 0 without an answer, kPathTooLong
    /// when the path has more than 251 characters.
    DWORD StatFSAvailSpace(const char* sPath);

    bool SendPath(EFS2_Cmd_Enum eCommand, const char* sPath);
    bool AskOfPath(EFS2_Cmd_Enum eCommand, const char* sPath);
    bool TakeErrorNo(DWORD& iErrorNo);

    CommandFrame& m_frame;
};
