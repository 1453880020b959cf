// The copy of one file, with its progress shown and its failure put in words.
#pragma once

#include <string>

#include "wfxhost/session.h"

namespace wfxhost {

/// CopyFromPhone copies a phone file to `localFile`, and CopyToPhone the other way. An existing target is
/// replaced only with `force`. The progress goes to standard output; Ctrl-C stops the copy. They throw
/// Failure when the copy is not complete.
void CopyFromPhone(Session& session, const PhonePath& path, const Entry& entry, const std::string& localFile,
                   bool force);
void CopyToPhone(Session& session, const std::string& localFile, const PhonePath& path, bool force);

} // namespace wfxhost
