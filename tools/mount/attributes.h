// Entries of the phone and their attributes.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace tools::mount {

using Clock = std::chrono::steady_clock;

/// The attributes of an entry; of a link, its own. Times are in seconds, as the phone counts them.
struct Attributes {
    uint32_t mode = 0; // including the kind
    uint32_t size = 0;
    uint32_t links = 1;
    uint32_t accessed = 0;
    uint32_t modified = 0;
    uint32_t changed = 0;

    bool IsLink() const { return S_ISLNK(mode); }
    bool IsFolder() const { return S_ISDIR(mode); }
    /// True when content and identity are assumed to be the same.
    bool IsSameVersion(const Attributes& other) const {
        return mode == other.mode && size == other.size && modified == other.modified &&
               changed == other.changed;
    }
};

struct Entry {
    std::string name;
    Attributes attributes;
    bool isSound = false; // false: the phone contradicts itself; only the name can be used
};

/// The content of a folder.
struct Listing {
    std::vector<Entry> entries; // in the phone's order
    std::vector<uint32_t> byName;
    Clock::time_point validUntil;

    /// Must be called before Find.
    void Sort();
    const Entry* Find(const std::string& name) const;
};

/// Returns the folder of a path ("/" for entries of the root).
std::string FolderOf(const std::string& path);
/// Returns the last component of a path.
std::string NameOf(const std::string& path);
/// Returns true for the folder itself and all paths below it.
bool IsWithin(const std::string& path, const std::string& folder);

} // namespace tools::mount
