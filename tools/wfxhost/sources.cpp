#include "wfxhost/sources.h"

#include <algorithm>

#include "common/local_path.h"
#include "common/pattern.h"
#include "common/text.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

/// Returns the components of a path.
std::vector<std::string> Components(const PhonePath& path) {
    std::vector<std::string> components;
    for (PhonePath rest = path; !rest.IsRoot(); rest = rest.Folder())
        components.insert(components.begin(), rest.Name());
    return components;
}

bool IsFolder(const fs::path& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

/// Returns the entries of a folder of this computer that match a pattern, sorted.
std::vector<fs::path> LocalMatches(const fs::path& folder, const std::string& pattern) {
    std::vector<fs::path> matches;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? "." : folder, error);
    for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if ((!name.starts_with('.') || pattern.starts_with('.')) && Matches(pattern, name))
            matches.push_back(folder / entry->path().filename());
    }
    std::ranges::sort(matches);
    return matches;
}

} // namespace

const std::map<std::string, Entry>& PhoneLookup::Entries(const PhonePath& folder) {
    const auto known = m_folders.find(folder.Text());
    if (known != m_folders.end())
        return known->second;
    std::vector<Entry> entries;
    if (m_session.List(folder, entries) == Session::ListResult::NoResponse) {
        const Failure none = m_session.NoHandset();
        throw m_folders.empty() ? none : Failure(none.what());
    }
    // A missing folder has no entries. An existing one that the phone refuses to read is a failure.
    const std::string refusal = m_session.TakeReason();
    if (entries.empty() && !refusal.empty()) {
        const Entry* entry = folder.IsRoot() ? nullptr : Find(folder);
        if (folder.IsRoot() || (entry && entry->isFolder))
            throw Failure(refusal);
    }
    std::map<std::string, Entry>& kept = m_folders[folder.Text()];
    for (Entry& entry : entries) {
        // A name that is a path would lead to another entry.
        if (!entry.name.empty() && entry.name.find('/') == std::string::npos)
            kept.try_emplace(entry.name, entry);
    }
    return kept;
}

const Entry* PhoneLookup::Find(const PhonePath& path) {
    static const Entry root = [] {
        Entry entry;
        entry.isFolder = true;
        return entry;
    }();
    const std::map<std::string, Entry>& entries = Entries(path.Folder());
    if (path.IsRoot())
        return &root;
    const auto found = entries.find(path.Name());
    return found == entries.end() ? nullptr : &found->second;
}

std::vector<Found> PhoneLookup::Expand(const std::string& typed) {
    const PhonePath whole(typed);
    if (const Entry* exact = Find(whole))
        return {{whole, *exact}};
    if (!IsPattern(whole.Text()))
        return {};
    const std::vector<std::string> components = Components(whole);
    std::vector<Found> found = {{PhonePath(), *Find(PhonePath())}};
    for (size_t i = 0; i < components.size(); ++i) {
        const bool isLast = i + 1 == components.size();
        std::vector<Found> next;
        for (const Found& folder : found) {
            const PhonePath child = folder.path.Child(components[i]);
            if (!IsPattern(components[i])) {
                if (const Entry* entry = Find(child))
                    next.push_back({child, *entry});
                continue;
            }
            for (const auto& [name, entry] : Entries(folder.path))
                if ((isLast || entry.isFolder) && Matches(components[i], name))
                    next.push_back({folder.path.Child(name), entry});
        }
        found = std::move(next);
    }
    return found;
}

std::vector<fs::path> ExpandLocal(const std::string& typed) {
    std::error_code error;
    const fs::path path = LocalPath(typed);
    if (!IsPattern(typed) || fs::exists(fs::symlink_status(path, error)))
        return {path};
    std::vector<fs::path> found = {path.root_path()};
    for (const fs::path& component : path.relative_path()) {
        const std::string name = component.string();
        std::vector<fs::path> next;
        for (const fs::path& folder : found) {
            if (name.empty() || !IsPattern(name)) {
                if (fs::exists(fs::symlink_status(folder / component, error)))
                    next.push_back(folder / component);
            } else if (folder.empty() || IsFolder(folder)) {
                const std::vector<fs::path> matches = LocalMatches(folder, name);
                next.insert(next.end(), matches.begin(), matches.end());
            }
        }
        found = std::move(next);
    }
    return found;
}

std::string NoMatchReason(const std::string& typed, const char* kind) {
    const std::string path = PhonePath(typed).Text();
    return std::string("the phone has no ") + kind + " " + Quoted(path) +
           (IsPattern(path) ? ", and nothing matches it as a pattern" : "");
}

} // namespace tools::wfxhost
