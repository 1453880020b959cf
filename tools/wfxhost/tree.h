// What a copy of a whole folder has to copy.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// A folder or file of a tree, here and on the phone.
struct TreeItem {
    PhonePath phone;
    std::filesystem::path local;
    Entry entry; // the source's kind and size
};

/// Tree is what was found in a folder, the folder itself first, each folder before what it holds.
struct Tree {
    std::vector<TreeItem> items;
    size_t files = 0;
    uint64_t bytes = 0;                // of the files
    std::vector<std::string> failures; // what cannot be copied, and why
    std::vector<std::string> notes;    // what is left out on purpose, or should be known
};

/// ScanPhone finds out what a folder of the phone holds, with each folder's listing open while those below
/// are walked, and ScanLocal does so for a folder here. `local` and `phone` are the two paths of the tree's
/// root. Links to folders below it are not followed. They throw Failure after Ctrl-C and when the handset
/// does not answer.
Tree ScanPhone(Session& session, const PhonePath& phone, const std::filesystem::path& local);
Tree ScanLocal(const std::filesystem::path& local, const PhonePath& phone);

} // namespace tools::wfxhost
