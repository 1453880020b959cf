// The efs stat command: what the phone reports about its files, folders and links.
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "common/text.h"
#include "qdiag/commands.h"
#include "qdiag/efs/phone_files.h"
#include "qdiag/efs/phone_path.h"
#include "qdiag/facts.h"

namespace tools::qdiag {
namespace {

void AddTime(Facts& facts, const char* key, uint32_t time) {
    using namespace std::chrono;
    const sys_seconds moment{seconds(time)};
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss clock(moment - day);
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d", int(date.year()),
                  unsigned(date.month()), unsigned(date.day()), int(clock.hours().count()),
                  int(clock.minutes().count()), int(clock.seconds().count()));
    std::string json = text;
    std::ranges::replace(json, ' ', 'T');
    facts.Add(key, text, "\"" + json + "Z\"");
}

Facts FactsOf(const std::string& path, const PhoneEntry& entry, const std::string& target) {
    char mode[8];
    std::snprintf(mode, sizeof mode, "%04o", static_cast<unsigned>(entry.mode));
    Facts facts;
    facts.Text("path", path);
    facts.Text("kind", KindText(entry.kind));
    facts.Text("mode", mode);
    facts.Number("size", entry.size);
    if (entry.kind == Kind::Link)
        facts.Missing({"links"}, "");
    else
        facts.Number("links", entry.links);
    AddTime(facts, "accessed", entry.accessed);
    AddTime(facts, "modified", entry.modified);
    AddTime(facts, "changed", entry.changed);
    if (entry.kind == Kind::Link)
        facts.Text("target", target);
    return facts;
}

/// Reads a link's own attributes, which the phone reports only in the listing of its folder.
Outcome LinkStatus(PhoneFiles& files, const std::string& path, PhoneEntry& link) {
    std::vector<PhoneEntry> entries;
    Outcome outcome = files.List(FolderOf(path), entries);
    const auto found = std::ranges::find(entries, NameOf(path), &PhoneEntry::name);
    if (found != entries.end())
        link = *found;
    else if (outcome.IsGranted())
        outcome.reason = "the listing of its folder does not have it";
    link.kind = Kind::Link;
    return outcome;
}

} // namespace

void EfsStatCommand(const Job& job) {
    std::vector<std::string> paths;
    for (const std::string& text : job.arguments)
        paths.push_back(ParsePhonePath(text));
    const Phone phone(job);
    PhoneFiles files(phone);
    std::vector<std::string> failures;
    std::string text;
    for (const std::string& path : paths) {
        PhoneEntry entry;
        std::string target;
        // The phone follows links when it reports a status.
        const bool isLink = path != "/" && files.LinkTarget(path, target).IsGranted();
        const Outcome outcome = isLink ? LinkStatus(files, path, entry) : files.Stat(path, entry);
        if (!outcome.IsGranted()) {
            failures.push_back(Quoted(path) + ": " + outcome.reason);
            continue;
        }
        const Facts facts = FactsOf(path, entry, target);
        if (job.Has("--json"))
            text += (text.empty() ? "" : ",\n") + facts.AsJson();
        else
            text += (text.empty() ? "" : "\n") + facts.AsText();
    }
    std::printf("%s", job.Has("--json") ? ("[" + text + "]\n").c_str() : text.c_str());
    for (size_t i = 0; i + 1 < failures.size(); ++i)
        std::fprintf(stderr, "qdiag: %s\n", failures[i].c_str());
    if (!failures.empty())
        throw Failure(failures.back());
}

} // namespace tools::qdiag
