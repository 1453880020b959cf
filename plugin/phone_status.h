// What the phone says about one of its paths.
#pragma once

#include "efs2/failure_text.h"
#include "platform/types.h"

class Operation;

/// PhoneStatus is the phone's answer to a status query, links followed.
struct PhoneStatus {
    DWORD iErrorNo = 0; // 0: there is such an entry
    DWORD iMode = 0;
    DWORD iSize = 0; // bytes
    DWORD iLinkCount = 0;
    DWORD iAccessTime = 0; // times: seconds since 1970, UTC
    DWORD iModifyTime = 0;
    DWORD iCreateTime = 0;

    /// Ask queries a phone path over the operation's connection. False, with nothing to be concluded, when
    /// the phone did not answer or there is no connection.
    bool Ask(Operation& operation, const char* sPhonePath);

    /// Nothing is there for sure only when the phone says so in these words: every other refusal leaves it
    /// open.
    bool IsMissing() const { return iErrorNo == EFS2_ERROR_NOT_THERE; }
    bool Exists() const { return iErrorNo == 0; }
    bool IsFolder() const;

    /// By its mode it is a folder, or a file, that its owner may read. For some modes both are true.
    bool IsReadableFolder() const { return (iMode & kReadableFolder) == kReadableFolder; }
    bool IsReadableFile() const { return (iMode & kReadableFile) == kReadableFile; }

private:
    static constexpr DWORD kReadableFolder = 0x4100;
    static constexpr DWORD kReadableFile = 0x8100;
};

/// The host's codes for a target that is not known to be free.
struct TargetCodes {
    int iUnknown; // the phone did not say
    int iExists;
};

/// CheckTargetIsFree returns FS_FILE_OK when the phone says that nothing is at the path, otherwise one of the
/// codes. The host is told why the phone did not say.
int CheckTargetIsFree(Operation& operation, const char* sPhonePath, const TargetCodes& codes);
