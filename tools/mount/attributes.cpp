#include "mount/attributes.h"

#include <algorithm>
#include <numeric>

namespace tools::mount {

void Listing::Sort() {
    byName.resize(entries.size());
    std::iota(byName.begin(), byName.end(), 0U);
    std::ranges::sort(byName, {}, [this](uint32_t i) -> const std::string& { return entries[i].name; });
}

const Entry* Listing::Find(const std::string& name) const {
    const auto found = std::ranges::lower_bound(
        byName, name, {}, [this](uint32_t i) -> const std::string& { return entries[i].name; });
    return found != byName.end() && entries[*found].name == name ? &entries[*found] : nullptr;
}

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

} // namespace tools::mount
