#include "wfxhost/commands.h"

#include "common/text.h"

namespace tools::wfxhost {
namespace {

void RequireNotRoot(const PhonePath& path) {
    if (path.IsRoot())
        throw Failure("that is the root folder of the phone");
}

/// Removal's result tells only that the phone answered; the listing tells whether the entry is gone.
void RequireGone(Session& session, const PhonePath& path, bool result, const std::string& ifRefused) {
    if (!result)
        RequireAnswer(session, "deleting");
    if (!result || session.Find(path))
        throw Failure("the phone did not delete " + Quoted(path.Text()) + ifRefused);
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
    RequireGone(session, path, session.RemoveFolder(path), "; perhaps it is not empty");
}

void RemoveFileCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    if (Existing(session, path).isFolder)
        throw Failure(Quoted(path.Text()) + " is a folder; rmdir removes empty folders");
    RequireGone(session, path, session.RemoveFile(path), "");
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

PhonePath IntoFolder(Session& session, const PhonePath& typed, const std::string& name) {
    return typed.NamesFolder() || session.IsFolder(typed) ? typed.Child(name) : typed;
}

void RequireTargetFolder(Session& session, const PhonePath& path) {
    if (!session.Find(path.Folder()))
        throw Failure("the phone has no folder " + Quoted(path.Folder().Text()));
}

} // namespace tools::wfxhost
