// Files of the phone from standard input and to standard output.
#pragma once

#include "wfxhost/copy_job.h"
#include "wfxhost/session.h"

namespace tools::wfxhost {

/// "-" on the command line.
constexpr const char* kStream = "-";

/// PrintFile copies a phone file to standard output, by way of a temporary file. Throws Failure when nothing
/// or not everything was printed.
void PrintFile(Session& session, const PhonePath& path, const Entry& entry);

/// PutInput copies standard input to a phone file, by way of a temporary file; nothing is asked of the phone
/// before the input's end. Throws Failure when that fails.
void PutInput(Session& session, const PhonePath& path, const CopyOptions& options);

} // namespace tools::wfxhost
