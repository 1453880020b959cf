// Why an operation on the handset did not do what was asked.
#pragma once

#include "platform/types.h"

/// OperationFailure says why an operation failed, or was refused where its result does not say so.
struct OperationFailure {
    /// What went wrong.
    enum class Kind {
        None,            // it did not, or the reason is not known
        NotSent,         // a path does not fit into a request: nothing was sent
        NoAnswer,        // the handset did not answer
        UnusableAnswer,  // it answered, but not what answers the request
        Refused,         // it refused; iErrorNo is its error number
        NoRoom,          // the phone has less free space than the file needs: nothing was written
        LocalNotRead,    // the local file cannot be read; iErrorNo is errno's value, or 0
        LocalNotWritten, // the local file cannot be written; iErrorNo likewise
    };
    Kind eKind = Kind::None; // what went wrong
    DWORD iErrorNo = 0;      // as the kind says, else 0
};
