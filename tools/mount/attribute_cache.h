// What the phone said a moment ago.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <unordered_map>

#include "mount/attributes.h"

namespace tools::mount {

/// AttributeCache keeps listings and attributes for a moment, and for longer whether an entry was a link and
/// which version of a file was last opened. Whoever changes an entry must Forget it. One thread.
class AttributeCache {
public:
    /// Remember keeps what the phone said about one entry.
    void Remember(const std::string& path, const Attributes& attributes);
    /// Remember keeps a listing; its validUntil says how long.
    void Remember(const std::string& folder, std::shared_ptr<const Listing> listing);

    /// What Known tells of a path.
    enum class Answer { Unknown, Missing, Here };
    /// Known looks a path up in what is still good.
    Answer Known(const std::string& path, Attributes& attributes) const;
    /// The listing of a folder, if it is still good and nothing in the folder has changed since.
    std::shared_ptr<const Listing> KnownListing(const std::string& folder) const;
    /// What was last known of a path, however long ago.
    std::optional<Attributes> LastKnown(const std::string& path) const;

    /// OpenedVersion notes the version of a file that is being opened; true when it is the one of the last
    /// time, so that what was read then is still the content.
    bool OpenedVersion(const std::string& path, const Attributes& attributes);

    /// Forget drops what is known of a path and of all below it; its folder's listing no longer speaks of it.
    void Forget(const std::string& path);
    /// ForgetAttributes drops the attributes of the entry alone.
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
        std::set<std::string> changed; // names of which the listing no longer speaks
    };

    const Folder* FreshFolder(const std::string& folder) const;
    void DropOldListings();

    std::unordered_map<std::string, Single> m_singles;
    std::map<std::string, Folder> m_folders;
    std::unordered_map<std::string, Attributes> m_opened;
};

} // namespace tools::mount
