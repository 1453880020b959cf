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

} // namespace tools::mount
