// The words for what the phone's file system refuses.
#pragma once

#include <string>

#include "diag/operation_failure.h"
#include "platform/export.h"
#include "platform/types.h"

/// Error numbers of the phone's file system that programs act on. The phone sends others, too.
enum EFS2_ErrorNo_Enum : DWORD {
    EFS2_ERROR_NONE = 0,
    EFS2_ERROR_NOT_THERE = 2,
    EFS2_ERROR_EXISTS = 17,
};

/// EFS2_ErrorText returns what an error number of the phone's file system means, with the number behind it:
/// "no space left (28)"; "unknown error (77)" for one that is not known.
QUILLET_API std::string EFS2_ErrorText(DWORD iErrorNo);

/// EFS2_FailureText returns why an operation failed, in words that end a sentence: "the phone refused it: no
/// space left (28)", "the handset stopped answering".
QUILLET_API std::string EFS2_FailureText(const OperationFailure& failure);
