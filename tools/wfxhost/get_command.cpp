// The commands get and cat.
#include <filesystem>
#include <set>

#include "common/interrupt.h"
#include "common/local_path.h"
#include "common/text.h"
#include "wfxhost/commands.h"
#include "wfxhost/copy_plan.h"
#include "wfxhost/problems.h"
#include "wfxhost/streams.h"
#include "wfxhost/system.h"

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

void RequireLocalFolder(const std::string& typed) {
    if (!IsLocalFolder(LocalPath(typed)))
        throw Failure("there is no folder " + Quoted(typed) + "; several sources need one");
}

/// Returns a text that is the same for entries of one name on this system. Throws when it can hold none of
/// that name.
std::string NameKey(const PhonePath& path) {
    std::string key = LocalNameKey(path.Name());
    if (key.empty())
        throw Failure(Quoted(path.Text()) + ": this system cannot store a file with that name");
    return key;
}

fs::path LocalTarget(const std::string& typed, const PhonePath& path) {
    const fs::path target = LocalPath(typed);
    const bool isFolder = IsLocalFolder(target);
    if (isFolder)
        NameKey(path);
    if (!isFolder && !target.has_filename())
        throw Failure("there is no folder " + Quoted(typed));
    fs::path file = isFolder ? (target / LocalPath(path.Name())).lexically_normal() : target;
    if (IsLocalFolder(file))
        throw Failure(Quoted(file.string()) + " is a folder");
    RequireParent(file);
    return file;
}

/// Returns the local folder for the copy of a tree. The root of the phone has no name; its copy is the folder
/// as typed.
fs::path LocalTreeTarget(const std::string& typed, const PhonePath& path) {
    const fs::path target = LocalPath(typed);
    const bool isFolder = IsLocalFolder(target);
    if (isFolder && !path.IsRoot())
        NameKey(path);
    const fs::path whole = isFolder ? target / LocalPath(path.Name()) : target;
    fs::path folder = (whole.has_filename() ? whole : whole.parent_path()).lexically_normal();
    RequireParent(folder);
    return folder;
}

/// GetPlan collects what get copies from its sources.
class GetPlan : CopyPlan {
public:
    GetPlan(Session& session, const Job& job) : CopyPlan(session, job, ".") {
        for (const std::string& typed : m_sources) {
            const std::vector<Found> found = m_lookup.Expand(typed);
            if (found.empty())
                RecordNoMatch(NoMatchReason(typed, "file"));
            m_found.insert(m_found.end(), found.begin(), found.end());
        }
    }

    void PrintAll() {
        Problems problems("not printed", m_sources.size() == 1 && m_found.size() == 1);
        for (const std::string& failure : m_tree.failures)
            problems.Add(failure);
        for (const Found& found : m_found) {
            if (found.entry.isFolder)
                problems.Add(Quoted(found.path.Text()) + " is a folder");
            else
                PrintFile(m_session, found.path, found.entry);
        }
        problems.Finish("not everything was printed, see above");
    }

    void Copy() {
        if (m_target == kStream)
            return PrintAll();
        if (m_found.size() != 1)
            RequireLocalFolder(m_target);
        const InterruptGuard guard;
        std::optional<Session::Batch> batch;
        if (m_found.size() > 1 || (m_found.size() == 1 && IsTree(m_found[0])))
            batch.emplace(m_session, FS_STATUS_OP_GET_MULTI, m_found[0].path.Folder());
        for (const Found& found : m_found)
            Add(found);
        CopyFromPhone(m_session, m_tree, CopyOptionsOf(m_job));
    }

private:
    bool IsTree(const Found& found) {
        return m_job.Has("--recursive") && (found.entry.isFolder || m_session.IsFolder(found.path));
    }

    void Add(const Found& found) {
        const bool isOnly = m_found.size() == 1 && m_sources.size() == 1;
        TryAdd(isOnly, [&] {
            if (!m_paths.insert(found.path.Text()).second)
                return; // named twice
            if (!isOnly)
                RequireUniqueName(found.path);
            if (isOnly ? IsTree(found) : m_job.Has("--recursive") && found.entry.isFolder)
                AddTree(found);
            else if (found.entry.isFolder)
                throw Failure(Quoted(found.path.Text()) + " is a folder; get -r copies folders");
            else
                m_tree.Add({found.path, LocalTarget(m_target, found.path), found.entry});
        });
    }

    void RequireUniqueName(const PhonePath& path) {
        if (!m_keys.insert(NameKey(path)).second)
            throw Failure(Quoted(path.Text()) + ": another source has the same name here");
    }

    void AddTree(const Found& found) {
        if (found.path.IsRoot() && m_job.arguments.size() == 1)
            throw Failure("the phone's root has no name; name the folder for its copy: get -r / LOCAL",
                          Status::Usage);
        const fs::path local = LocalTreeTarget(m_target, found.path);
        WithoutNoHandsetStatus([&] { AddFromPhone(m_tree, m_session, found.path, local); });
    }

    std::vector<Found> m_found;
    std::set<std::string> m_paths; // of m_found
    std::set<std::string> m_keys;  // of the names in the target folder
};

} // namespace

void GetCommand(Session& session, const Job& job) {
    GetPlan(session, job).Copy();
}

void PrintCommand(Session& session, const Job& job) {
    Job printing = job;
    printing.arguments.push_back(kStream);
    GetPlan(session, printing).Copy();
}

} // namespace tools::wfxhost
