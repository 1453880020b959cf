// What the phone reported a moment ago.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <unordered_map>

#include "mount/attributes.h"

namespace tools::mount {

/// AttributeCache keeps listings and attributes for a moment. For longer it keeps whether an entry was a
/// link, and which version of a file was last opened. Code that changes an entry must call Forget. One
/// thread.
class AttributeCache {
public:
    /// Stores the attributes of one entry.
    void Remember(const std::string& path, const Attributes& attributes);
    /// Stores a listing until its validUntil.
    void Remember(const std::string& folder, std::shared_ptr<const Listing> listing);

    /// What Find knows about a path.
    enum class Knowledge { Unknown, Missing, Exists };
    /// Searches what is still valid for a path. `attributes` is written for Exists only.
    Knowledge Find(const std::string& path, Attributes& attributes) const;
    /// Returns the listing of a folder if it is still valid and nothing in the folder has changed since, else
    /// null.
    std::shared_ptr<const Listing> KnownListing(const std::string& folder) const;
    /// Returns the last known attributes of a path, however old.
    std::optional<Attributes> LastKnown(const std::string& path) const;

    /// Records the version of a file that is being opened. Returns true when it is the same as the last time,
    /// so that what was read then is still the content.
    bool OpenedVersion(const std::string& path, const Attributes& attributes);

    /// Drops everything about a path and all paths below it. The listing of its folder no longer counts for
    /// it.
    void Forget(const std::string& path);
    /// Drops only the attributes of the entry.
    void ForgetAttributes(const std::string& path);
    /// Drops all listings.
    void DropListings() { m_folders.clear(); }
    /// Forgets everything.
    void Clear();

private:
    struct Single {
        Attributes attributes;
        Clock::time_point validUntil;
    };
    struct Folder {
        std::shared_ptr<const Listing> listing;
        std::set<std::string> changed; // names for which the listing no longer counts
    };

    const Folder* FreshFolder(const std::string& folder) const;
    void DropOldListings();

    std::unordered_map<std::string, Single> m_singles;
    std::map<std::string, Folder> m_folders;
    std::unordered_map<std::string, Attributes> m_opened;
};

} // namespace tools::mount
