// Folders of the phone as the plug-in lists them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/host_interface.h"

namespace tools::wfxhost {

struct Entry {
    std::string name; // as on the phone, any bytes
    bool isFolder = false;
    DWORD attributes = 0; // FILE_ATTRIBUTE_... flags from the plug-in
    uint64_t size = 0;    // bytes; of a link, what the phone reports for it
    FILETIME written{};   // UTC, in units of 100 ns since 1601
};

/// FindRecord is the record that a plug-in fills for one entry. Plug-ins that were built for hosts with a
/// longer name field write past the published record, so there is room after it.
class FindRecord {
public:
    /// Empty returns the record, zeroed, for the plug-in to fill.
    WIN32_FIND_DATAA* Empty();
    Entry Take() const;

private:
    static constexpr size_t kNameLimit = 4096;
    struct {
        WIN32_FIND_DATAA data;
        char room[kNameLimit];
    } m_record;
};

/// UnixTime returns a time as seconds since 1 January 1970, UTC; nothing when there is none.
std::optional<int64_t> UnixTime(const FILETIME& time);

/// How entries are printed.
struct ListingForm {
    bool isJson = false;
    bool hasSizeUnits = false; // "1.4 MB" instead of the bytes
    bool isNamesOnly = false;  // one name per line
    bool isZeroed = false;     // names only, as they are, each with a zero byte after it
    bool marksFolders = false; // '/' after the names of folders; with names only
};

/// PrintEntries prints entries, sorted by name. A line has: type (d: folder, -: file), size, date, name. The
/// JSON form is an array of EntryAsJson objects with the key "name".
void PrintEntries(std::vector<Entry> entries, const ListingForm& form);

/// NameAsJson returns the two members by which the JSON forms write a name or path: `key`, and "utf8" (false:
/// the text is not UTF-8, and each of its bytes became the character of the same number).
std::string NameAsJson(const char* key, const std::string& text);

/// EntryAsJson returns an object on one line: `key` ("name" or "path") with `name`, and "utf8"; "type"
/// ("folder" or "file"); "size" in bytes (null for folders); "modified" (ISO 8601, UTC, or null);
/// "attributes" (number).
std::string EntryAsJson(const Entry& entry, const char* key, const std::string& name);

/// JsonArray prints an array, one element per line. It is complete after its end, whatever happens between.
class JsonArray {
public:
    /// `isWanted`: false makes an object that does nothing.
    explicit JsonArray(bool isWanted = true);
    ~JsonArray();
    JsonArray(const JsonArray&) = delete;
    JsonArray& operator=(const JsonArray&) = delete;
    void Add(const std::string& element);

private:
    const bool m_isWanted;
    const char* m_separator = "\n";
};

} // namespace tools::wfxhost
