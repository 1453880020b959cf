// Arguments of the commands that a user types in the host.
#pragma once

#include <string>

namespace tools::wfxhost {

/// QuoteArgument returns a path as such a command takes it between double quotes, seen from the root folder:
/// without the leading '/'. Throws Failure for a path with a double quote, which no quoting can carry.
std::string QuoteArgument(const std::string& path);

} // namespace tools::wfxhost
