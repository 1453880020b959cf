// Paths of this computer from the programs' texts.
#pragma once

#include <filesystem>
#include <string>

namespace tools {

/// Returns the path for a text. On Windows the text is UTF-8; a path made from it directly would have one
/// character for each byte. On other systems the path has the bytes of the text. path::string() converts
/// back. Throws when Windows can have no such path.
inline std::filesystem::path LocalPath(const std::string& text) {
    return std::u8string(text.begin(), text.end());
}

} // namespace tools
