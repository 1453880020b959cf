// Where a path leads in the simulated file system; for the sources of FileSystem alone.
#pragma once

#include "handset/file_system.h"

namespace handset {

/// What a look-up found. `folder` and `name` say where the last name of the path (after following links)
/// stands or would stand; `folder` is null for the root and for paths that end in "." or "..".
struct FileSystem::Place {
    Errnum errnum = Errnum::None; // why the folder of the last name could not be reached
    NodePtr node;                 // null when there is no such entry
    NodePtr folder;
    std::string name;

    /// Why the entry cannot be used: the look-up's own error, or NotFound.
    Errnum Missing() const {
        return errnum != Errnum::None ? errnum : node ? Errnum::None : Errnum::NotFound;
    }
    /// Why no entry of this name can be removed or moved: as Missing, or Busy for the root and the like.
    Errnum Unmovable() const {
        const Errnum missing = Missing();
        return missing != Errnum::None ? missing : folder ? Errnum::None : Errnum::Busy;
    }
};

/// The names of a path, without the separators and "."s.
std::vector<std::string> SplitPath(const std::string& path);

/// The time of day in seconds since 1970.
uint32_t Now();

} // namespace handset
