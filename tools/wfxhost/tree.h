// The files and folders of one copy.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// A folder or file of a tree: its paths on both sides.
struct TreeItem {
    PhonePath phone;
    std::filesystem::path local;
    Entry entry; // the source's kind, size and time
};

/// Tree lists what one copy copies. A folder precedes its content.
struct Tree {
    std::vector<TreeItem> items;
    size_t files = 0;
    uint64_t bytes = 0;                // of the files
    std::vector<std::string> failures; // what cannot be copied, and why
    std::vector<std::string> notes;    // what is skipped on purpose, or what the user should know

    void Add(TreeItem item);
};

/// AddFromPhone adds a folder of the phone and its content, to be copied to `local`; AddFromComputer adds a
/// folder of this computer, to be copied to `phone`. Links to folders in it are not followed. They throw
/// Failure after Ctrl-C and when the handset does not answer.
void AddFromPhone(Tree& tree, Session& session, const PhonePath& phone, const std::filesystem::path& local);
void AddFromComputer(Tree& tree, const std::filesystem::path& local, const PhonePath& phone);

/// Returns the modification time of a file of this computer, in seconds since 1970.
int64_t LocalTime(const std::filesystem::path& file);

} // namespace tools::wfxhost
