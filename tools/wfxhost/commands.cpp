#include "wfxhost/commands.h"

#include "common/text.h"

namespace tools::wfxhost {

Entry Existing(Session& session, const PhonePath& path) {
    const std::optional<Entry> entry = session.Find(path);
    if (!entry)
        throw Failure("the phone has no file or folder " + Quoted(path.Text()));
    return *entry;
}

void RequireNotRoot(const PhonePath& path) {
    if (path.IsRoot())
        throw Failure("that is the root folder of the phone");
}

void Fail(Session& session, const std::string& what, const std::string& otherwise) {
    const std::string reason = session.TakeReason();
    if (!reason.empty())
        throw Failure(reason);
    if (!session.Answers())
        throw Failure(what + " failed: the handset stopped answering");
    throw Failure(otherwise);
}

PhonePath IntoFolder(Session& session, const PhonePath& typed, const std::string& name) {
    return typed.NamesFolder() || session.IsFolder(typed) ? typed.Child(name) : typed;
}

void RequireTargetFolder(Session& session, const PhonePath& path) {
    if (!session.Find(path.Folder()))
        throw Failure("the phone has no folder " + Quoted(path.Folder().Text()));
}

} // namespace tools::wfxhost
