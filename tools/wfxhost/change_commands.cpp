// The commands mkdir, mv and ln.
#include "common/text.h"
#include "wfxhost/commands.h"
#include "wfxhost/problems.h"
#include "wfxhost/quote.h"
#include "wfxhost/sources.h"

namespace tools::wfxhost {
namespace {

void MakeFolder(Session& session, const PhonePath& path) {
    if (!session.MakeFolder(path))
        Fail(session, "making the folder", "the phone refused to make the folder " + Quoted(path.Text()));
}

/// Makes a folder and the missing folders above it.
void MakeFolders(Session& session, const PhonePath& path) {
    const std::optional<Entry> entry = session.Find(path);
    if (entry && !entry->isFolder && !session.IsFolder(path))
        throw Failure(Quoted(path.Text()) + " is a file");
    if (entry)
        return;
    MakeFolders(session, path.Folder());
    WithoutNoHandsetStatus([&] { MakeFolder(session, path); });
}

void Move(Session& session, const Found& source, const PhonePath& to, bool force) {
    RequireTargetFolder(session, to);
    const int result = session.Move(source.path, to, source.entry, force);
    if (result == FS_FILE_OK)
        return;
    if (result == FS_FILE_EXISTS || result == FS_FILE_EXISTSRESUMEALLOWED)
        throw Failure(Quoted(to.Text()) + " exists already; --force replaces it");
    Fail(session, "moving",
         "the phone refused to move " + Quoted(source.path.Text()) + " to " + Quoted(to.Text()));
}

} // namespace

void MakeFolderCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    if (job.Has("--parents"))
        return MakeFolders(session, path);
    if (session.Find(path))
        throw Failure(Quoted(path.Text()) + " exists already");
    RequireTargetFolder(session, path);
    MakeFolder(session, path);
}

void MoveCommand(Session& session, const Job& job) {
    const PhonePath typed(job.arguments.back());
    PhoneLookup lookup(session);
    std::vector<Found> sources;
    for (size_t i = 0; i + 1 < job.arguments.size(); ++i) {
        const std::vector<Found> found = lookup.Expand(job.arguments[i]);
        if (found.empty())
            throw Failure(NoMatchReason(job.arguments[i], "file or folder"));
        sources.insert(sources.end(), found.begin(), found.end());
    }
    for (const Found& source : sources)
        RequireNotRoot(source.path);
    const bool isFolder = session.IsFolder(typed);
    if (sources.size() > 1 && !isFolder)
        throw Failure("the phone has no folder " + Quoted(typed.Text()) + "; several sources need one");
    Problems problems("not moved", sources.size() == 1);
    for (const Found& source : sources) {
        const bool goesInside = isFolder || (typed.NamesFolder() && !source.entry.isFolder);
        try {
            Move(session, source, goesInside ? typed.Child(source.path.Name()) : typed, job.Has("--force"));
        } catch (const Failure& failure) {
            if (sources.size() == 1 || !session.Answers())
                throw;
            problems.Add(failure.what());
        }
    }
    problems.Finish("not everything was moved, see above");
}

void LinkCommand(Session& session, const Job& job) {
    const std::string ending = ".lnk";
    const PhonePath target(job.arguments[0]);
    std::string name = PhonePath(job.arguments[1]).Text();
    // The plug-in appends the ending.
    if (name.ends_with(ending))
        name.resize(name.size() - ending.size());
    const PhonePath link(name + ending);
    RequireTargetFolder(session, link);
    Existing(session, target);
    if (session.Find(link))
        throw Failure(Quoted(link.Text()) + " exists already");
    std::string unused;
    const int result = session.TypedCommand(
        "ln \"" + QuoteArgument(target.Text()) + "\" \"" + QuoteArgument(name) + "\"", unused);
    std::string reason = session.TakeReason();
    // The result does not show whether the phone refused; the listing shows whether the link exists.
    if (result == FS_EXEC_OK && WithoutNoHandsetStatus([&] { return session.Find(link); }))
        return;
    if (!reason.empty())
        throw Failure(reason);
    Fail(session, "making the link", "the phone did not make the link " + Quoted(link.Text()));
}

} // namespace tools::wfxhost
