// The commands get and put.
#include <filesystem>
#include <fstream>

#include "wfxhost/commands.h"
#include "wfxhost/copy.h"
#include "wfxhost/failure.h"

namespace wfxhost {
namespace {

namespace fs = std::filesystem;

fs::path LocalTarget(const std::string& typed, const std::string& name) {
    const fs::path target = typed;
    std::error_code error;
    const bool isFolder = fs::is_directory(target, error);
    if (!isFolder && !target.has_filename())
        throw Failure("there is no folder " + Quoted(typed));
    fs::path file = isFolder ? (target / name).lexically_normal() : target;
    if (fs::is_directory(file, error))
        throw Failure(Quoted(file.string()) + " is a folder");
    const fs::path folder = file.parent_path();
    if (!folder.empty() && !fs::is_directory(folder, error))
        throw Failure("there is no folder " + Quoted(folder.string()));
    return file;
}

} // namespace

void GetCommand(Session& session, const Job& job) {
    const PhonePath path(job.arguments[0]);
    const std::optional<Entry> entry = session.Find(path);
    if (!entry)
        throw Failure("the phone has no file " + Quoted(path.Text()));
    if (entry->isFolder)
        throw Failure(Quoted(path.Text()) + " is a folder; get copies single files");
    const fs::path local = LocalTarget(job.arguments.size() > 1 ? job.arguments[1] : ".", path.Name());
    CopyFromPhone(session, path, *entry, local.string(), job.force);
}

void PutCommand(Session& session, const Job& job) {
    const fs::path local = job.arguments[0];
    std::error_code error;
    if (!fs::exists(local, error))
        throw Failure("there is no file " + Quoted(local.string()));
    if (!fs::is_regular_file(local, error))
        throw Failure(Quoted(local.string()) + " is no plain file; put copies single files");
    if (!std::ifstream(local, std::ios::binary))
        throw Failure("cannot read " + Quoted(local.string()));
    const PhonePath typed(job.arguments.size() > 1 ? job.arguments[1] : "/");
    const PhonePath path = IntoFolder(session, typed, local.filename().string());
    RequireTargetFolder(session, path);
    if (const auto entry = session.Find(path); entry && entry->isFolder)
        throw Failure(Quoted(path.Text()) + " is a folder");
    CopyToPhone(session, local.string(), path, job.force);
}

} // namespace wfxhost
