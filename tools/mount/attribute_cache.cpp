#include "mount/attribute_cache.h"

namespace tools::mount {
namespace {

constexpr auto kMoment = std::chrono::seconds(1);
constexpr size_t kMostSingles = 4096;
constexpr size_t kMostOpened = 4096;

} // namespace

void AttributeCache::Remember(const std::string& path, const Attributes& attributes) {
    if (m_singles.size() >= kMostSingles)
        m_singles.clear();
    m_singles[path] = {attributes, Clock::now() + kMoment};
}

void AttributeCache::Remember(const std::string& folder, std::shared_ptr<const Listing> listing) {
    DropOldListings();
    m_folders[folder] = {std::move(listing), {}};
}

void AttributeCache::DropOldListings() {
    const auto now = Clock::now();
    std::erase_if(m_folders, [&](const auto& folder) { return folder.second.listing->validUntil < now; });
}

const AttributeCache::Folder* AttributeCache::FreshFolder(const std::string& folder) const {
    const auto found = m_folders.find(folder);
    return found != m_folders.end() && Clock::now() <= found->second.listing->validUntil ? &found->second
                                                                                         : nullptr;
}

AttributeCache::Knowledge AttributeCache::Find(const std::string& path, Attributes& attributes) const {
    const auto single = m_singles.find(path);
    if (single != m_singles.end() && Clock::now() <= single->second.validUntil) {
        attributes = single->second.attributes;
        return Knowledge::Exists;
    }
    const Folder* const folder = path == "/" ? nullptr : FreshFolder(FolderOf(path));
    if (!folder || folder->changed.contains(NameOf(path)))
        return Knowledge::Unknown;
    const Entry* const entry = folder->listing->Find(NameOf(path));
    if (!entry)
        return Knowledge::Missing;
    attributes = entry->attributes;
    return entry->isSound ? Knowledge::Exists : Knowledge::Unknown;
}

std::shared_ptr<const Listing> AttributeCache::KnownListing(const std::string& folder) const {
    const Folder* const found = FreshFolder(folder);
    return found && found->changed.empty() ? found->listing : nullptr;
}

std::optional<Attributes> AttributeCache::LastKnown(const std::string& path) const {
    const auto single = m_singles.find(path);
    return single != m_singles.end() ? std::optional(single->second.attributes) : std::nullopt;
}

bool AttributeCache::OpenedVersion(const std::string& path, const Attributes& attributes) {
    if (m_opened.size() >= kMostOpened)
        m_opened.clear();
    const auto [found, isNew] = m_opened.try_emplace(path, attributes);
    const bool isSame = !isNew && found->second.IsSameVersion(attributes);
    found->second = attributes;
    return isSame;
}

void AttributeCache::Forget(const std::string& path) {
    const auto known = m_singles.find(path);
    const bool isFile = known != m_singles.end() && S_ISREG(known->second.attributes.mode);
    ForgetAttributes(path);
    m_opened.erase(path);
    if (isFile)
        return; // nothing is below it
    std::erase_if(m_folders, [&](const auto& folder) { return IsWithin(folder.first, path); });
    std::erase_if(m_singles, [&](const auto& single) { return IsWithin(single.first, path); });
    std::erase_if(m_opened, [&](const auto& opened) { return IsWithin(opened.first, path); });
}

void AttributeCache::ForgetAttributes(const std::string& path) {
    m_singles.erase(path);
    const auto folder = m_folders.find(FolderOf(path));
    if (folder != m_folders.end())
        folder->second.changed.insert(NameOf(path));
}

void AttributeCache::Clear() {
    m_singles.clear();
    m_folders.clear();
    m_opened.clear();
}

} // namespace tools::mount
