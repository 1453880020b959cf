// What a copy of whole folders, or of several files, has to copy.
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
    Entry entry; // the source's kind, size and time
};

/// Tree is what one copy has to copy: files, and folders, each before what it holds.
struct Tree {
    std::vector<TreeItem> items;
    size_t files = 0;
    uint64_t bytes = 0;                // of the files
    std::vector<std::string> failures; // what cannot be copied, and why
    std::vector<std::string> notes;    // what is left out on purpose, or should be known

    void Add(TreeItem item);
};

/// AddFromPhone adds a folder of the phone with all that it holds, to be copied to `local`, and AddFromHere a
/// folder of this computer. Links to folders below it are not followed. They throw Failure after Ctrl-C and
/// when the handset does not answer.
void AddFromPhone(Tree& tree, Session& session, const PhonePath& phone, const std::filesystem::path& local);
void AddFromHere(Tree& tree, const std::filesystem::path& local, const PhonePath& phone);

/// LocalTime returns when a file of this computer was written, in seconds since 1970.
int64_t LocalTime(const std::filesystem::path& file);

} // namespace tools::wfxhost
