// The commands rm and rmdir.
#include <cstdio>

#include "common/interrupt.h"
#include "common/text.h"
#include "wfxhost/commands.h"
#include "wfxhost/remove.h"

namespace tools::wfxhost {
namespace {

/// Plans the removal of the entries that an argument names. Throws Failure when one cannot be removed.
void Plan(Removal& removal, PhoneLookup& lookup, const std::string& typed, const Job& job) {
    const std::vector<Found> found = lookup.Expand(typed);
    if (found.empty() && !job.Has("--force"))
        throw Failure(NoMatchReason(typed, "file or folder"));
    for (const Found& one : found) {
        RequireNotRoot(one.path);
        if (one.entry.isFolder && !job.Has("--recursive"))
            throw Failure(Quoted(one.path.Text()) +
                          " is a folder; rmdir removes empty folders, rm -r folders and their contents");
        removal.Add(one, one.entry.isFolder);
    }
}

} // namespace

void RemoveCommand(Session& session, const Job& job) {
    const InterruptGuard guard;
    Removal removal(session);
    PhoneLookup lookup(session);
    Problems problems("not deleted", job.arguments.size() == 1);
    for (const std::string& typed : job.arguments) {
        try {
            Plan(removal, lookup, typed, job);
        } catch (const Failure& failure) {
            if (failure.ExitStatus() != Status::Failed || Interrupted())
                throw;
            problems.Add(failure.what());
        }
    }
    if (job.Has("--dry-run")) {
        for (const auto& [path, found] : removal.Planned())
            std::printf("would delete %s\n", Quoted(path).c_str());
    } else if (!removal.Planned().empty()) {
        Problems left("not deleted", removal.Planned().size() == 1 && problems.Count() == 0);
        WithoutNoHandsetStatus([&] { removal.Run(left, ""); });
        left.Finish("not everything was deleted, see above");
    }
    problems.Finish("not everything was deleted, see above");
}

void RemoveFolderCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    RequireNotRoot(path);
    const Entry entry = Existing(session, path);
    if (!entry.isFolder)
        throw Failure(Quoted(path.Text()) + " is not a folder; rm deletes files");
    std::vector<Entry> entries;
    if (session.List(path, entries) == Session::ListResult::Entries)
        throw Failure("the folder " + Quoted(path.Text()) + " is not empty");
    session.TakeReason(); // the phone may refuse to list the folder and still remove it
    Removal removal(session);
    removal.Add({path, entry}, false);
    Problems problems("not deleted", true);
    removal.Run(problems, "; perhaps it is not empty");
}

} // namespace tools::wfxhost
