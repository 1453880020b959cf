#include "wfxhost/commands.h"

#include <algorithm>

#include "common/text.h"

namespace tools::wfxhost {
namespace {

void RequireNotRoot(const PhonePath& path) {
    if (path.IsRoot())
        throw Failure("that is the root folder of the phone");
}

} // namespace

void ListCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments.empty() ? "/" : job.arguments[0]);
    std::vector<Entry> entries;
    Session::ListResult result = session.List(path, entries, path.NamesFolder());
    if (result == Session::ListResult::Empty && path.IsRoot())
        result = session.List(path, entries); // tells an empty root from a handset that went away meanwhile
    if (result == Session::ListResult::NoAnswer)
        throw session.NoHandset();
    if (result == Session::ListResult::Empty) {
        const Entry entry = Existing(session, path);
        if (!entry.isFolder)
            entries.push_back(entry);
    }
    if (job.Has("--json"))
        PrintEntriesAsJson(std::move(entries));
    else
        PrintEntries(std::move(entries));
}

void MakeFolderCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    if (session.Find(path))
        throw Failure(Quoted(path.Text()) + " exists already");
    RequireTargetFolder(session, path);
    if (session.MakeFolder(path))
        return;
    RequireAnswer(session, "making the folder");
    throw Failure("the phone refused to make the folder " + Quoted(path.Text()));
}

void RemoveFolderCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    RequireNotRoot(path);
    if (!Existing(session, path).isFolder)
        throw Failure(Quoted(path.Text()) + " is no folder; rm deletes files");
    std::vector<Entry> entries;
    if (session.List(path, entries) == Session::ListResult::Entries)
        throw Failure("the folder " + Quoted(path.Text()) + " is not empty");
    Remove(session, path, &Session::RemoveFolder, "; perhaps it is not empty");
}

void RemoveFileCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    if (Existing(session, path).isFolder)
        throw Failure(Quoted(path.Text()) + " is a folder; rmdir removes empty folders");
    Remove(session, path, &Session::RemoveFile, "");
}

void MoveCommand(Session& session, const Job& job) {
    const PhonePath from(job.arguments[0]);
    RequireNotRoot(from);
    const Entry entry = Existing(session, from);
    PhonePath to(job.arguments[1]);
    if (!entry.isFolder || session.IsFolder(to))
        to = IntoFolder(session, to, from.Name());
    RequireTargetFolder(session, to);
    switch (session.Move(from, to, entry, job.Has("--force"))) {
        case FS_FILE_OK:
            return;
        case FS_FILE_EXISTS:
        case FS_FILE_EXISTSRESUMEALLOWED:
            throw Failure(Quoted(to.Text()) + " exists already; --force replaces it");
        default:
            RequireAnswer(session, "moving");
            throw Failure("the phone refused to move " + Quoted(from.Text()) + " to " + Quoted(to.Text()));
    }
}

Entry Existing(Session& session, const PhonePath& path) {
    const std::optional<Entry> entry = session.Find(path);
    if (!entry)
        throw Failure("the phone has no file or folder " + Quoted(path.Text()));
    return *entry;
}

void RequireAnswer(Session& session, const std::string& what) {
    if (!session.Answers())
        throw Failure(what + " failed: the handset stopped answering");
}

void Remove(Session& session, const PhonePath& path, bool (Session::*remove)(const PhonePath&),
            const std::string& ifRefused) {
    using enum Session::ListResult;
    std::vector<Entry> entries;
    session.List(path.Folder(), entries);
    const bool isAlone = entries.size() == 1;
    const bool result = (session.*remove)(path);
    // A listing that broke off looks empty, too.
    Session::ListResult seen = session.List(path.Folder(), entries);
    if (seen != Entries)
        seen = session.List(path.Folder(), entries);
    if (!result)
        RequireAnswer(session, "deleting");
    if (!result || std::ranges::count(entries, path.Name(), &Entry::name) != 0)
        throw Failure("the phone did not delete " + Quoted(path.Text()) + ifRefused);
    if (seen != Entries && !(seen == Empty && isAlone && session.Answers()))
        throw Failure("the handset stopped answering: whether " + Quoted(path.Text()) +
                      " was deleted is not known");
}

PhonePath IntoFolder(Session& session, const PhonePath& typed, const std::string& name) {
    return typed.NamesFolder() || session.IsFolder(typed) ? typed.Child(name) : typed;
}

void RequireTargetFolder(Session& session, const PhonePath& path) {
    if (!session.Find(path.Folder()))
        throw Failure("the phone has no folder " + Quoted(path.Folder().Text()));
}

} // namespace tools::wfxhost
