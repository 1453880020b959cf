// Parts of absolute paths on the phone: "/" and names with '/' between them.
#pragma once

#include <string>

namespace tools {

/// Returns the folder of a path ("/" for what is in the root), and the name in it.
std::string FolderOf(const std::string& path);
std::string NameOf(const std::string& path);

/// Returns true for the folder itself and everything below it.
bool IsWithin(const std::string& path, const std::string& folder);

} // namespace tools
