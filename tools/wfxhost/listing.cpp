#include "wfxhost/listing.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "common/progress.h"
#include "common/text.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {

WIN32_FIND_DATAA* FindRecord::Empty() {
    std::memset(static_cast<void*>(&m_record), 0, sizeof m_record);
    return &m_record.data;
}

Entry FindRecord::Take() const {
    const char* bytes = reinterpret_cast<const char*>(&m_record) + offsetof(WIN32_FIND_DATAA, cFileName);
    Entry entry;
    entry.name.assign(bytes, std::find(bytes, bytes + kNameLimit, '\0'));
    entry.isFolder = (m_record.data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    entry.attributes = m_record.data.dwFileAttributes;
    entry.size = (uint64_t{m_record.data.nFileSizeHigh} << 32) | m_record.data.nFileSizeLow;
    entry.written = m_record.data.ftLastWriteTime;
    return entry;
}

std::optional<int64_t> UnixTime(const FILETIME& time) {
    constexpr uint64_t kUnitsPerSecond = 10'000'000;
    constexpr int64_t kSecondsFrom1601To1970 = 11'644'473'600;
    const uint64_t units = (uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
    if (units == 0)
        return std::nullopt;
    return static_cast<int64_t>(units / kUnitsPerSecond) - kSecondsFrom1601To1970;
}

namespace {

/// Returns a time (UTC) as "2011-05-04 13:37:00" with `separator` before the clock time and `end` after it,
/// or nothing if there is none.
std::optional<std::string> DateText(const FILETIME& time, char separator, const char* end) {
    using namespace std::chrono;
    const std::optional<int64_t> unixTime = UnixTime(time);
    if (!unixTime)
        return std::nullopt;
    const sys_seconds moment{seconds(*unixTime)};
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss clock(moment - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u%c%02d:%02d:%02d%s", int(date.year()),
                  unsigned(date.month()), unsigned(date.day()), separator, int(clock.hours().count()),
                  int(clock.minutes().count()), int(clock.seconds().count()), end);
    return text;
}

std::string SizeOf(const Entry& entry, const ListingForm& form) {
    if (entry.isFolder)
        return "-";
    return form.hasSizeUnits ? SizeText(static_cast<double>(entry.size)) : std::to_string(entry.size);
}

void PrintNames(const std::vector<Entry>& entries, const ListingForm& form) {
    if (form.isZeroed)
        MakeOutputBinary();
    for (const Entry& entry : entries) {
        std::string line = form.isZeroed ? entry.name : Printable(entry.name);
        line += form.marksFolders && entry.isFolder ? "/" : "";
        line += form.isZeroed ? '\0' : '\n';
        std::fwrite(line.data(), 1, line.size(), stdout);
    }
}

void PrintLines(const std::vector<Entry>& entries, const ListingForm& form) {
    size_t width = 1;
    for (const Entry& entry : entries)
        width = std::max(width, SizeOf(entry, form).size());
    for (const Entry& entry : entries)
        std::printf("%c  %*s  %-19s  %s\n", entry.isFolder ? 'd' : '-', static_cast<int>(width),
                    SizeOf(entry, form).c_str(), DateText(entry.written, ' ', "").value_or("-").c_str(),
                    Printable(entry.name).c_str());
}

} // namespace

void PrintEntries(std::vector<Entry> entries, const ListingForm& form) {
    std::ranges::sort(entries, {}, &Entry::name);
    if (form.isJson) {
        JsonArray array;
        for (const Entry& entry : entries)
            array.Add(EntryAsJson(entry, "name", entry.name));
    } else if (form.isNamesOnly || form.isZeroed) {
        PrintNames(entries, form);
    } else {
        PrintLines(entries, form);
    }
}

std::string NameAsJson(const char* key, const std::string& text) {
    return "\"" + std::string(key) + "\": " + JsonText(text) +
           ", \"utf8\": " + (IsUtf8(text) ? "true" : "false");
}

std::string EntryAsJson(const Entry& entry, const char* key, const std::string& name) {
    const std::optional<std::string> date = DateText(entry.written, 'T', "Z");
    return "{" + NameAsJson(key, name) + ", \"type\": " + (entry.isFolder ? "\"folder\"" : "\"file\"") +
           ", \"size\": " + (entry.isFolder ? "null" : std::to_string(entry.size)) +
           ", \"modified\": " + (date ? JsonText(*date) : "null") +
           ", \"attributes\": " + std::to_string(entry.attributes) + "}";
}

JsonArray::JsonArray(bool isWanted) : m_isWanted(isWanted) {
    if (m_isWanted)
        std::printf("[");
}

JsonArray::~JsonArray() {
    if (m_isWanted)
        std::printf("\n]\n");
}

void JsonArray::Add(const std::string& element) {
    std::printf("%s%s", m_separator, element.c_str());
    m_separator = ",\n";
}

} // namespace tools::wfxhost
