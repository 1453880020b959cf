// The status of a path on the phone.
#pragma once

#include "efs2/failure_text.h"
#include "platform/types.h"

class Operation;

/// PhoneStatus is the phone's response to a status query. Links are followed.
struct PhoneStatus {
    DWORD iErrorNo = 0; // 0: the path exists
    DWORD iMode = 0;
    DWORD iSize = 0; // bytes
    DWORD iLinkCount = 0;
    DWORD iAccessTime = 0; // times: seconds since 1970, UTC
    DWORD iModifyTime = 0;
    DWORD iCreateTime = 0;

    /// Queries a phone path over the operation's connection. Returns false when the phone did not answer or
    /// there is no connection; the fields then mean nothing.
    bool Query(Operation& operation, const char* sPhonePath);

    /// True when the phone reported that nothing is at the path. After any other refusal something may be
    /// there.
    bool IsMissing() const { return iErrorNo == EFS2_ERROR_NOT_THERE; }
    bool Exists() const { return iErrorNo == 0; }
    bool IsFolder() const;

    /// True when the mode is that of a folder, or of a file, that its owner may read. Some modes are both.
    bool IsReadableFolder() const { return (iMode & kReadableFolder) == kReadableFolder; }
    bool IsReadableFile() const { return (iMode & kReadableFile) == kReadableFile; }

private:
    static constexpr DWORD kReadableFolder = 0x4100;
    static constexpr DWORD kReadableFile = 0x8100;
};

/// The host's codes for a target that may exist.
struct TargetCodes {
    int iUnknown; // the phone did not report whether it exists
    int iExists;
};

/// Returns FS_FILE_OK when the phone reports that nothing is at the path, else one of `codes`. Logs the
/// reason for iUnknown to the host.
int CheckTargetIsFree(Operation& operation, const char* sPhonePath, const TargetCodes& codes);
