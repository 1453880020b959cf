// Failures of operations on the mounted folder.
#pragma once

#include "quillet.h"

namespace tools::mount {

/// Thrown by operations that fail, with the errno value for the calling program.
struct PosixError {
    int number;
};

/// Returns the errno value for an error number of the phone. Unknown numbers become EIO, and so do those that
/// would blame the program for a problem of the phone's own, such as a lost descriptor.
int HostErrno(DWORD phoneError);

} // namespace tools::mount
