#include "wfxhost/listing.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <optional>

#include "common/text.h"

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

namespace {

/// A time (UTC) as "2011-05-04 13:37:00", with `separator` before the clock and `end` behind it; nothing for
/// none.
std::optional<std::string> DateText(const FILETIME& time, char separator, const char* end) {
    constexpr uint64_t kUnitsPerSecond = 10'000'000;
    constexpr int64_t kSecondsFrom1601To1970 = 11'644'473'600;
    const uint64_t units = (uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
    if (units == 0)
        return std::nullopt;
    using namespace std::chrono;
    const sys_seconds moment(seconds(static_cast<int64_t>(units / kUnitsPerSecond) - kSecondsFrom1601To1970));
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss clock(moment - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u%c%02d:%02d:%02d%s", int(date.year()),
                  unsigned(date.month()), unsigned(date.day()), separator, int(clock.hours().count()),
                  int(clock.minutes().count()), int(clock.seconds().count()), end);
    return text;
}

} // namespace

void PrintEntries(std::vector<Entry> entries) {
    std::ranges::sort(entries, {}, &Entry::name);
    size_t sizeWidth = 1;
    for (const Entry& entry : entries)
        sizeWidth = std::max(sizeWidth, entry.isFolder ? 1 : std::to_string(entry.size).size());
    for (const Entry& entry : entries) {
        const std::string size = entry.isFolder ? "-" : std::to_string(entry.size);
        std::printf("%c  %*s  %-19s  %s\n", entry.isFolder ? 'd' : '-', static_cast<int>(sizeWidth),
                    size.c_str(), DateText(entry.written, ' ', "").value_or("-").c_str(),
                    Printable(entry.name).c_str());
    }
}

void PrintEntriesAsJson(std::vector<Entry> entries) {
    std::ranges::sort(entries, {}, &Entry::name);
    std::string text;
    for (const Entry& entry : entries) {
        const std::optional<std::string> date = DateText(entry.written, 'T', "Z");
        text += text.empty() ? "\n" : ",\n";
        text += "{\"name\": " + JsonText(entry.name) +
                ", \"utf8\": " + (IsUtf8(entry.name) ? "true" : "false") +
                ", \"type\": " + (entry.isFolder ? "\"folder\"" : "\"file\"") +
                ", \"size\": " + (entry.isFolder ? "null" : std::to_string(entry.size)) +
                ", \"modified\": " + (date ? JsonText(*date) : "null") +
                ", \"attributes\": " + std::to_string(entry.attributes) + "}";
    }
    std::printf("[%s\n]\n", text.c_str());
}

} // namespace tools::wfxhost
