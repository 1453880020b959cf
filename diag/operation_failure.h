// Why an operation on the phone failed.
#pragma once

#include "platform/types.h"

/// OperationFailure says why an operation failed, or why the phone refused where the result does not show it.
struct OperationFailure {
    /// What went wrong.
    enum class Kind {
        None,             // nothing failed, or the reason is not known
        NotSent,          // a path does not fit into a request: nothing was sent
        NoResponse,       // the phone did not answer
        UnusableResponse, // the response does not fit the request
        Refused,          // the phone refused; iErrorNo is its error number
        NoRoom,           // the phone has less free space than the file needs: nothing was written
        LocalNotRead,     // the local file cannot be read; iErrorNo is errno's value, or 0
        LocalNotWritten,  // the local file cannot be written; iErrorNo likewise
    };
    Kind eKind = Kind::None; // what went wrong
    DWORD iErrorNo = 0;      // as the kind says, else 0
};
