// Folders of the phone as the plug-in lists them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/host_interface.h"

namespace tools::wfxhost {

struct Entry {
    std::string name; // as on the phone, any bytes
    bool isFolder = false;
    DWORD attributes = 0; // FILE_ATTRIBUTE_... flags as the plug-in gives them
    uint64_t size = 0;    // bytes; of a link, what the phone reports for it
    FILETIME written{};   // UTC, in units of 100 ns since 1601
};

/// FindRecord is the record that a plug-in fills for one entry. Plug-ins that were built for hosts with a
/// longer name field write past the published record, so there is room behind it.
class FindRecord {
public:
    /// Empty gives the zeroed record to hand to the plug-in.
    WIN32_FIND_DATAA* Empty();
    Entry Take() const;

private:
    static constexpr size_t kNameLimit = 4096;
    struct {
        WIN32_FIND_DATAA data;
        char room[kNameLimit];
    } m_record;
};

/// PrintEntries writes one line per entry, sorted by name: type (d: folder, -: file), size, date, name.
void PrintEntries(std::vector<Entry> entries);

/// PrintEntriesAsJson writes an array of objects, sorted by name, one per line: "name"; "utf8" (false: the
/// name is not UTF-8, and each of its bytes stands in "name" as the character of the same number); "type"
/// ("folder" or "file"); "size" in bytes (null for folders); "modified" (ISO 8601, UTC, or null);
/// "attributes" (number).
void PrintEntriesAsJson(std::vector<Entry> entries);

} // namespace tools::wfxhost
