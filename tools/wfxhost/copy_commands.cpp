// The commands get and put.
#include <filesystem>
#include <fstream>

#include "common/text.h"
#include "wfxhost/commands.h"
#include "wfxhost/copy.h"
#include "wfxhost/tree_copy.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

bool IsLocalFolder(const fs::path& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

void RequireParent(const fs::path& path) {
    const fs::path folder = path.parent_path();
    if (!folder.empty() && !IsLocalFolder(folder))
        throw Failure("there is no folder " + Quoted(folder.string()));
}

fs::path LocalTarget(const std::string& typed, const std::string& name) {
    const fs::path target = typed;
    const bool isFolder = IsLocalFolder(target);
    if (!isFolder && !target.has_filename())
        throw Failure("there is no folder " + Quoted(typed));
    fs::path file = isFolder ? (target / name).lexically_normal() : target;
    if (IsLocalFolder(file))
        throw Failure(Quoted(file.string()) + " is a folder");
    RequireParent(file);
    return file;
}

/// The folder that a tree of that name becomes; of the phone's root, which has no name, the typed one.
fs::path LocalTreeTarget(const std::string& typed, const std::string& name) {
    if (typed.empty())
        throw Failure("the phone's root has no name; say where its copy is to be: get -r / LOCAL",
                      Status::Usage);
    const fs::path target = typed;
    const fs::path whole = IsLocalFolder(target) ? target / name : target;
    fs::path folder = (whole.has_filename() ? whole : whole.parent_path()).lexically_normal();
    RequireParent(folder);
    return folder;
}

void PutTree(Session& session, const fs::path& local, const PhonePath& typed, bool force) {
    // "." and "folder/" have the name of the folder that they are.
    fs::path whole = fs::absolute(local).lexically_normal();
    if (!whole.has_filename())
        whole = whole.parent_path();
    const PhonePath target = IntoFolder(session, typed, whole.filename().string());
    RequireTargetFolder(session, target);
    CopyTreeToPhone(session, local, target, force);
}

} // namespace

void GetCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    const std::optional<Entry> entry = session.Find(path);
    if (!entry)
        throw Failure("the phone has no file " + Quoted(path.Text()));
    if (job.Has("-r") && (entry->isFolder || session.IsFolder(path))) {
        const std::string here = path.IsRoot() ? "" : ".";
        const std::string typed = job.arguments.size() > 1 ? job.arguments[1] : here;
        return CopyTreeFromPhone(session, path, LocalTreeTarget(typed, path.Name()), job.Has("--force"));
    }
    if (entry->isFolder)
        throw Failure(Quoted(path.Text()) + " is a folder; get -r copies folders");
    const fs::path local = LocalTarget(job.arguments.size() > 1 ? job.arguments[1] : ".", path.Name());
    CopyFromPhone(session, path, *entry, local.string(), job.Has("--force"));
}

void PutCommand(Session& session, const Job& job) {
    const fs::path local = job.arguments[0];
    const PhonePath typed(job.arguments.size() > 1 ? job.arguments[1] : "/");
    std::error_code error;
    if (!fs::exists(local, error))
        throw Failure("there is no file " + Quoted(local.string()));
    if (job.Has("-r") && IsLocalFolder(local))
        return PutTree(session, local, typed, job.Has("--force"));
    if (!fs::is_regular_file(local, error))
        throw Failure(Quoted(local.string()) + " is no plain file; put -r copies folders");
    if (!std::ifstream(local, std::ios::binary))
        throw Failure("cannot read " + Quoted(local.string()));
    const PhonePath path = IntoFolder(session, typed, local.filename().string());
    RequireTargetFolder(session, path);
    if (const auto entry = session.Find(path); entry && entry->isFolder)
        throw Failure(Quoted(path.Text()) + " is a folder");
    CopyToPhone(session, local.string(), path, job.Has("--force"));
}

} // namespace tools::wfxhost
