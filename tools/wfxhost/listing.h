// Listings of the phone's folders.
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

/// FindRecord is the record that a plug-in fills for one entry. It has spare room after it, because plug-ins
/// for hosts with a longer name field write past the published record.
class FindRecord {
public:
    /// Returns the record, zeroed, for the plug-in to fill.
    WIN32_FIND_DATAA* Empty();
    Entry Take() const;

private:
    static constexpr size_t kNameLimit = 4096;
    struct {
        WIN32_FIND_DATAA data;
        char room[kNameLimit];
    } m_record;
};

/// Returns a time as seconds since 1 January 1970 (UTC), or nothing if there is none.
std::optional<int64_t> UnixTime(const FILETIME& time);

/// How entries are printed.
struct ListingForm {
    bool isJson = false;
    bool hasSizeUnits = false; // "1.4 MB" instead of the bytes
    bool isNamesOnly = false;  // one name per line
    bool isZeroed = false;     // names only, unescaped, each followed by a zero byte
    bool marksFolders = false; // '/' after the names of folders; with names only
};

/// Prints entries, sorted by name. A line has the type (d: folder, -: file), size, date and name. The JSON
/// form is an array of EntryAsJson objects with the key "name".
void PrintEntries(std::vector<Entry> entries, const ListingForm& form);

/// Returns the two members that represent a name or path in JSON: `key`, and "utf8" (false: the text is not
/// UTF-8, and each of its bytes became the character with the same number).
std::string NameAsJson(const char* key, const std::string& text);

/// Returns an object on one line: `key` ("name" or "path") with `name`, and "utf8"; "type" ("folder" or
/// "file"); "size" in bytes (null for folders); "modified" (ISO 8601, UTC, or null); "attributes" (number).
std::string EntryAsJson(const Entry& entry, const char* key, const std::string& name);

/// JsonArray prints an array with one element per line. Its destructor completes the array, also after an
/// exception.
class JsonArray {
public:
    /// If `isWanted` is false, the object does nothing.
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
