// Quoting arguments of commands that users type in a host.
#pragma once

#include <string>

namespace tools::wfxhost {

/// Returns a path in the form in which such a command takes it between double quotes: relative to the root
/// folder, without the leading '/'. Throws Failure for a path with a double quote, which cannot be quoted.
std::string QuoteArgument(const std::string& path);

} // namespace tools::wfxhost
