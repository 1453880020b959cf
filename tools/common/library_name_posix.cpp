// Names of local files on Linux.
#include "common/library_name.h"

namespace tools {

std::string LibraryName(const std::string& path) {
    return path;
}

} // namespace tools
