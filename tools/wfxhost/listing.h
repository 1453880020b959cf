// Folders of the phone as the plug-in lists them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/host_interface.h"

namespace wfxhost {

struct Entry {
    std::string name; // as on the phone, any bytes
    bool isFolder = false;
    uint64_t size = 0;  // bytes; of a link, what the phone reports for it
    FILETIME written{}; // UTC, in units of 100 ns since 1601
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

/// DateText gives a time as "2011-05-04 13:37:00" (UTC), "-" for none.
std::string DateText(const FILETIME& time);

/// PrintEntries writes one line per entry, sorted by name: type (d: folder, -: file), size, date, name.
void PrintEntries(std::vector<Entry> entries);

} // namespace wfxhost
