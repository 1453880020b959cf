// Path look-up in the simulated file system. Only for the sources of FileSystem.
#pragma once

#include "handset/file_system.h"

namespace handset {

/// The result of a look-up. `folder` and `name` are the place of the last name of the path, with links
/// followed, whether or not there is such an entry. `folder` is null for the root and for paths that end in
/// "..".
struct FileSystem::Place {
    Errnum errnum = Errnum::None; // why the look-up did not reach the folder of the last name
    NodePtr node;                 // null when there is no such entry
    NodePtr folder;
    std::string name;

    /// Why the entry cannot be used: the look-up's own error, or NotFound.
    Errnum Missing() const {
        return errnum != Errnum::None ? errnum : node ? Errnum::None : Errnum::NotFound;
    }
    /// Why the entry cannot be removed or moved: as Missing, or Busy where `folder` is null.
    Errnum Unmovable() const {
        const Errnum missing = Missing();
        return missing != Errnum::None ? missing : folder ? Errnum::None : Errnum::Busy;
    }
};

/// The names in a path, without separators and ".".
std::vector<std::string> SplitPath(const std::string& path);

/// The time of day in seconds since 1970.
uint32_t Now();

} // namespace handset
