// Names of local files on Linux.
#include "common/library_name.h"

namespace tools {

std::string LibraryName(const std::filesystem::path& path) {
    return path.string();
}

} // namespace tools
