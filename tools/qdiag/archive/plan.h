// What an archive would make of the phone.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "qdiag/archive/reader.h"

namespace tools::qdiag {

/// An entry of the archive that is to be on the phone.
struct PlannedEntry {
    Kind kind = Kind::Folder; // File, Folder or Link
    uint32_t mode = 0777;     // permissions
    uint32_t size = 0;
    std::string target;
    bool isImplied = false; // a folder that the archive does not have, only what is in it
};

/// Plan is what an archive holds, by path on the phone, so that folders precede what is in them.
struct Plan {
    std::string file; // the archive
    std::map<std::string, PlannedEntry> entries;
    std::vector<std::string> order; // the paths in the archive's order; empty for what is not planned
    std::string identity;           // see ArchiveReader
};

/// Reads the whole archive and plans its entries that are in `folder`, or below it. Names what can be on no
/// phone, or leads out of its folder, on standard error. Throws Failure for such archives and for damaged
/// ones.
Plan MakePlan(const std::string& file, const std::string& folder);

/// Reads the archive of a plan again and calls `visit` for each planned file, in the archive's order. Throws
/// Failure when the archive is no longer the same; `aftermath` is the end of the text of failures.
using FileVisitor =
    std::function<void(const std::string& path, const PlannedEntry& entry, ArchiveReader& content)>;
void ForEachFile(const Plan& plan, const std::string& aftermath, const FileVisitor& visit);

} // namespace tools::qdiag
