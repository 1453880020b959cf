// How an operation of the mounted folder fails.
#pragma once

#include "quillet.h"

namespace tools::mount {

/// Thrown by whatever cannot be done, with the errno value that the calling program gets.
struct PosixError {
    int number;
};

/// HostErrno gives the errno value for an error number of the phone. Numbers that nobody knows are EIO, and
/// so are those that would blame the program for what is the phone's own affair, such as a lost descriptor.
int HostErrno(DWORD phoneError);

} // namespace tools::mount
