// What the phone says about one of its paths.
#pragma once

#include "platform/types.h"

/// PhoneStatus is the phone's answer to a status query on the front's connection. Used by the owner of the
/// connection.
struct PhoneStatus {
    DWORD iErrorNo = 0; // 0: there is such an entry
    DWORD iMode = 0;
    DWORD iSize = 0; // bytes

    /// Ask queries a phone path. False, with nothing to be concluded, when the phone did not answer or there
    /// is no connection.
    bool Ask(const char* sPhonePath);

    bool Exists() const { return iErrorNo == 0; }
    bool IsFolder() const;
};
