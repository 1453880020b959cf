// Paths of this computer from the programs' texts.
#pragma once

#include <filesystem>
#include <string>

namespace tools {

/// LocalPath returns the path that a text means: UTF-8 on Windows, where the paths' own conversion would take
/// each byte for a character; the bytes as they are elsewhere. path::string() is the way back. Throws when
/// Windows can have no such path.
inline std::filesystem::path LocalPath(const std::string& text) {
    return std::u8string(text.begin(), text.end());
}

} // namespace tools
