#include "common/phone_paths.h"

namespace tools {

std::string FolderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

bool IsWithin(const std::string& path, const std::string& folder) {
    return folder == "/" ||
           (path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/'));
}

} // namespace tools
