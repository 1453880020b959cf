// The entries that a command works on: typed paths, whose names may be patterns (common/pattern.h).
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// An entry of the phone and its path.
struct Found {
    PhonePath path;
    Entry entry;
};

/// PhoneLookup finds entries in listings that it keeps, so that thousands of names in one folder cost one
/// listing. Do not use it after a change on the phone that matters.
class PhoneLookup {
public:
    explicit PhoneLookup(Session& session) : m_session(session) {}

    /// Returns the entry at `path`, null when there is none. The root always exists. Throws Failure when the
    /// folder cannot be listed: NoHandset at the first look-up, later Failed, as when the phone refuses to
    /// list it.
    const Entry* Find(const PhonePath& path);
    /// Returns the entries of a folder by name. Throws as Find does.
    const std::map<std::string, Entry>& Entries(const PhonePath& folder);

    /// Returns the entries that a typed path means: the one with exactly that name if it exists, else those
    /// that match it as a pattern, sorted; possibly none. A pattern in the middle of a path matches folders.
    /// Throws as Find does.
    std::vector<Found> Expand(const std::string& typed);

private:
    Session& m_session;
    std::map<std::string, std::map<std::string, Entry>> m_folders; // by path
};

/// Returns the paths on this computer that a typed path means, in the same way. Names that begin with a dot
/// match only patterns that begin with one. A path that does not exist is returned as typed unless it is a
/// pattern.
std::vector<std::filesystem::path> ExpandLocal(const std::string& typed);

/// Returns the reason when a typed path means nothing. `kind`: "file" or "file or folder".
std::string NoMatchReason(const std::string& typed, const char* kind);

} // namespace tools::wfxhost
