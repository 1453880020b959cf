// Copying standard input to the phone, and files of the phone to standard output.
#pragma once

#include "wfxhost/copy_job.h"
#include "wfxhost/session.h"

namespace tools::wfxhost {

/// "-" on the command line.
constexpr const char* kStream = "-";

/// Copies a phone file to standard output, through a temporary file. Throws Failure unless the whole file was
/// printed.
void PrintFile(Session& session, const PhonePath& path, const Entry& entry);

/// Copies standard input to a phone file, through a temporary file. Contacts the phone only after the end of
/// the input. Throws Failure when the copy fails.
void PutInput(Session& session, const PhonePath& path, const CopyOptions& options);

} // namespace tools::wfxhost
