// The command put.
#include <filesystem>
#include <fstream>
#include <set>

#include "common/interrupt.h"
#include "common/text.h"
#include "wfxhost/commands.h"
#include "wfxhost/copy_plan.h"
#include "wfxhost/streams.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

bool IsLocalFolder(const fs::path& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

/// PutPlan collects what put copies from its sources.
class PutPlan : CopyPlan {
public:
    PutPlan(Session& session, const Job& job) : CopyPlan(session, job, "/") {
        for (const std::string& typed : m_sources) {
            const std::vector<fs::path> found = ExpandLocal(typed);
            if (found.empty())
                RecordNoMatch("there is no file " + Quoted(typed) + ", and nothing matches it as a pattern");
            m_found.insert(m_found.end(), found.begin(), found.end());
        }
    }

    void Copy() {
        const InterruptGuard guard;
        const PhonePath target(m_target);
        if (m_found.size() == 1 && m_sources.size() == 1)
            RequireSource(m_found[0]);
        m_isFolder = target.NamesFolder() || m_session.IsFolder(target);
        if (m_found.size() != 1 && !m_session.IsFolder(target))
            throw Failure("the phone has no folder " + Quoted(target.Text()) + "; several sources need one");
        std::optional<Session::Batch> batch;
        if (m_found.size() > 1 || (m_found.size() == 1 && IsTree(m_found[0])))
            batch.emplace(m_session, FS_STATUS_OP_PUT_MULTI,
                          m_found.size() > 1 ? target : Destination(m_found[0]).Folder());
        for (const fs::path& found : m_found)
            Add(found);
        CopyToPhone(m_session, m_tree, CopyOptionsOf(m_job));
    }

private:
    bool IsTree(const fs::path& local) const { return m_job.Has("--recursive") && IsLocalFolder(local); }

    /// Returns the target path of a source. For "." and "folder/", the name is that of the folder.
    PhonePath Destination(const fs::path& local) const {
        fs::path whole = fs::absolute(local).lexically_normal();
        if (!whole.has_filename())
            whole = whole.parent_path();
        const PhonePath typed(m_target);
        return m_isFolder ? typed.Child(whole.filename().string()) : typed;
    }

    void Add(const fs::path& local) {
        const bool isOnly = m_found.size() == 1 && m_sources.size() == 1;
        TryAdd(isOnly, [&] {
            RequireSource(local);
            const PhonePath path = Destination(local);
            if (!m_lookup.Find(path.Folder()))
                throw Failure("the phone has no folder " + Quoted(path.Folder().Text()));
            if (!m_paths.insert(path.Text()).second)
                throw Failure(Quoted(local.string()) + ": another source has the same name");
            if (IsTree(local))
                AddFromComputer(m_tree, local, path);
            else
                AddFile(local, path);
        });
    }

    void RequireSource(const fs::path& local) const {
        std::error_code error;
        if (!fs::exists(local, error))
            throw Failure("there is no file " + Quoted(local.string()));
        if (IsTree(local))
            return;
        if (!fs::is_regular_file(local, error))
            throw Failure(Quoted(local.string()) + " is not a regular file; put -r copies folders");
        if (!std::ifstream(local, std::ios::binary))
            throw Failure("cannot read " + Quoted(local.string()));
    }

    void AddFile(const fs::path& local, const PhonePath& path) {
        if (const Entry* entry = m_lookup.Find(path); entry && entry->isFolder)
            throw Failure(Quoted(path.Text()) + " is a folder");
        Entry entry;
        std::error_code error;
        entry.size = fs::file_size(local, error);
        if (error)
            entry.size = 0; // the copy will fail
        m_tree.Add({path, local, entry});
    }

    bool m_isFolder = false; // the target is a folder, or was typed as one
    std::vector<fs::path> m_found;
    std::set<std::string> m_paths; // of the targets
};

void PutInputCommand(Session& session, const Job& job) {
    if (job.arguments.size() != 2)
        throw Failure("standard input has no name; name the file on the phone: put - PHONE", Status::Usage);
    const PhonePath path(job.arguments[1]);
    if (path.NamesFolder() || session.IsFolder(path))
        throw Failure(Quoted(path.Text()) + " is a folder; standard input needs the name of a file");
    RequireTargetFolder(session, path);
    PutInput(session, path, CopyOptionsOf(job));
}

} // namespace

void PutCommand(Session& session, const Job& job) {
    if (job.arguments[0] == kStream)
        return PutInputCommand(session, job);
    PutPlan(session, job).Copy();
}

} // namespace tools::wfxhost
