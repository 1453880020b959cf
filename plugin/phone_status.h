// What the phone says about one of its paths.
#pragma once

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

    bool Exists() const { return iErrorNo == 0; }
    bool IsFolder() const;

    /// By its mode it is a folder, or a file, that its owner may read. For some modes both are true.
    bool IsReadableFolder() const { return (iMode & kReadableFolder) == kReadableFolder; }
    bool IsReadableFile() const { return (iMode & kReadableFile) == kReadableFile; }

private:
    static constexpr DWORD kReadableFolder = 0x4100;
    static constexpr DWORD kReadableFile = 0x8100;
};
