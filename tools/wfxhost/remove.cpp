#include "wfxhost/remove.h"

#include <algorithm>
#include <set>

#include "common/interrupt.h"
#include "common/progress.h"
#include "common/terminal.h"
#include "common/text.h"
#include "wfxhost/walk.h"

namespace tools::wfxhost {
namespace {

constexpr const char* kUndone = "nothing was deleted";

/// Collects a folder and its content.
class Collector : public Visitor {
public:
    bool Enter(const PhonePath& path, const Entry& entry, int) override {
        found.push_back({path, entry});
        return true;
    }
    void File(const PhonePath& path, const Entry& entry, int) override { found.push_back({path, entry}); }
    void Empty(const PhonePath&, const std::string&) override {} // if it is not empty, its removal fails
    void LeftOut(const std::string& reason) override { throw Failure(reason + "; " + kUndone); }

    std::vector<Found> found;
};

} // namespace

void Removal::Add(const Found& found, bool withContent) {
    if (m_planned.contains(found.path.Text()))
        return;
    Collector collector;
    if (withContent)
        WithoutNoHandsetStatus([&] { WalkPhone(m_session, found.path, found.entry, collector, kUndone); });
    else
        collector.found.push_back(found);
    for (const Found& one : collector.found)
        m_planned.try_emplace(one.path.Text(), one);
    m_folders[found.path.Folder().Text()].added.push_back(found);
}

void Removal::Run(Problems& problems, const char* ifRefused) {
    CheckFolders();
    RemoveAll();
    if (!m_stop.empty()) {
        for (const auto& [path, reason] : m_reasons)
            problems.Add(reason);
        throw Failure("stopped, " + m_stop + "; not everything was deleted");
    }
    for (const auto& [path, folder] : m_folders)
        Verify(path, folder, problems, ifRefused);
}

/// Checks whether the folders will be empty after the removal, because an interrupted listing looks empty,
/// too.
void Removal::CheckFolders() {
    for (auto& known : m_folders) {
        Folder& folder = known.second;
        std::vector<Entry> entries;
        m_session.List(PhonePath(known.first), entries);
        folder.holdsOthers = std::ranges::any_of(entries, [&](const Entry& entry) {
            return std::ranges::none_of(folder.added,
                                        [&](const Found& found) { return found.path.Name() == entry.name; });
        });
    }
}

void Removal::RemoveAll() {
    const bool isBatch = m_planned.size() > 1;
    std::optional<Session::Batch> batch;
    if (isBatch)
        batch.emplace(m_session, FS_STATUS_OP_DELETE, PhonePath(m_folders.begin()->first));
    Progress progress("deleting", isBatch && TerminalWidth() > 0);
    size_t done = 0;
    for (auto planned = m_planned.rbegin(); planned != m_planned.rend(); ++planned) {
        const auto& [path, found] = *planned;
        if (Interrupted()) {
            m_stop = "interrupted";
            return;
        }
        const bool isAnswered =
            found.entry.isFolder ? m_session.RemoveFolder(found.path) : m_session.RemoveFile(found.path);
        if (std::string reason = m_session.TakeReason(); !reason.empty())
            m_reasons[path] = std::move(reason);
        if (!isAnswered && !m_session.Answers())
            throw Failure("deleting failed: the handset stopped answering");
        progress.ReportSteps(++done, m_planned.size());
    }
}

void Removal::Verify(const std::string& path, const Folder& folder, Problems& problems,
                     const char* ifRefused) {
    using enum Session::ListResult;
    std::vector<Entry> entries;
    Session::ListResult seen = m_session.List(PhonePath(path), entries);
    if (seen != Entries)
        seen = m_session.List(PhonePath(path), entries);
    m_session.TakeReason();
    std::set<std::string> names;
    for (const Entry& entry : entries)
        names.insert(entry.name);
    for (const Found& found : folder.added)
        if (names.contains(found.path.Name()))
            ReportRemaining(found, problems, ifRefused);
    if (seen != Entries && (seen != Empty || folder.holdsOthers || !m_session.Answers()))
        throw Failure("the handset stopped answering: it is not known whether " +
                      Quoted(folder.added[0].path.Text()) + " was deleted");
}

/// Reports what is left of an added entry; for a folder, the entries that remain in it.
void Removal::ReportRemaining(const Found& found, Problems& problems, const char* ifRefused) {
    Collector left;
    const auto content = m_planned.upper_bound(found.path.Text() + "/");
    const bool hadContent = content != m_planned.end() && content->first.starts_with(found.path.Text() + "/");
    if (hadContent)
        WithoutNoHandsetStatus(
            [&] { WalkPhone(m_session, found.path, found.entry, left, "check what is left"); });
    else
        left.found.push_back(found);
    std::set<std::string> paths;
    for (const Found& one : left.found)
        paths.insert(one.path.Text() + "/");
    for (const Found& one : left.found) {
        const std::string path = one.path.Text();
        const auto next = std::next(paths.find(path + "/"));
        if (next != paths.end() && next->starts_with(path + "/"))
            continue; // it could not go because of its content
        const auto reason = m_reasons.find(path);
        if (reason != m_reasons.end())
            problems.Add(reason->second);
        else
            problems.Add("the phone did not delete " + Quoted(path) + ifRefused);
    }
}

} // namespace tools::wfxhost
