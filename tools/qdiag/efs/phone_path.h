// Paths on the phone, as users type them.
#pragma once

#include <string>

#include "common/phone_paths.h"

namespace tools::qdiag {

/// Returns a path as users type it with one '/' before each name and none at the end; "/" for the root.
/// "." is left out. Throws Failure (wrong usage) for a path with "..".
std::string ParsePhonePath(const std::string& text);

/// Returns the path of an entry of a folder.
std::string ChildOf(const std::string& folder, const std::string& name);

} // namespace tools::qdiag
