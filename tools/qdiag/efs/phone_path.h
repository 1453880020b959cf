// Paths on the phone: "/" and names with '/' between them.
#pragma once

#include <string>

namespace tools::qdiag {

/// Returns a path as users type it with one '/' before each name and none at the end; "/" for the root.
/// "." is left out. Throws Failure (wrong usage) for a path with "..".
std::string ParsePhonePath(const std::string& text);

/// Returns the path of an entry of a folder.
std::string ChildOf(const std::string& folder, const std::string& name);

/// Returns the folder of a path ("/" for what is in the root), and the name in it.
std::string FolderOf(const std::string& path);
std::string NameOf(const std::string& path);

/// Returns true for the folder itself and everything below it.
bool IsWithin(const std::string& path, const std::string& folder);

} // namespace tools::qdiag
