// The things that a command works on: typed paths, in which names may be patterns (common/pattern.h).
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// An entry of the phone and where it is.
struct Found {
    PhonePath path;
    Entry entry;
};

/// PhoneLookup looks entries up in listings that it keeps, so that thousands of names in one folder cost one
/// listing. It must not outlive a change on the phone that matters.
class PhoneLookup {
public:
    explicit PhoneLookup(Session& session) : m_session(session) {}

    /// Find returns the entry at `path`, null when there is none. The root is always found. Throws Failure
    /// when the folder cannot be listed: no handset at the first look-up, else a plain failure, as when the
    /// phone refuses to list it.
    const Entry* Find(const PhonePath& path);
    /// Entries returns the entries of a folder. Throws as Find.
    const std::map<std::string, Entry>& Entries(const PhonePath& folder);

    /// Expand returns what a typed path means: the entry of that very name if there is one, else all that fit
    /// it as a pattern, sorted; possibly nothing. In the middle of a path a pattern fits folders. Throws as
    /// Find.
    std::vector<Found> Expand(const std::string& typed);

private:
    Session& m_session;
    std::map<std::string, std::map<std::string, Entry>> m_folders; // by path
};

/// ExpandLocal returns what a typed path of this computer means, in the same way; names that begin with a dot
/// fit only patterns that do, too. A path that means nothing is returned as it is typed, unless it is a
/// pattern.
std::vector<std::filesystem::path> ExpandLocal(const std::string& typed);

/// NothingFits returns the reason to give when a typed path means nothing; `kind`: "file", "file or folder".
std::string NothingFits(const std::string& typed, const char* kind);

} // namespace tools::wfxhost
