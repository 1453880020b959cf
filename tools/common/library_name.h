// Names of local files for code that knows names of 8 bits alone: plug-ins and the library.
#pragma once

#include <filesystem>
#include <string>

namespace tools {

/// Returns the name by which such code opens a file of this computer. The file may be missing,
/// its folder not. Empty when there is no such name: on Windows the system's code page may lack a character,
/// and the drive short names.
std::string LibraryName(const std::filesystem::path& path);

} // namespace tools
