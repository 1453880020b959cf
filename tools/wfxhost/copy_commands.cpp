// The commands get, put and cat.
#include <filesystem>
#include <fstream>
#include <set>

#include "common/interrupt.h"
#include "common/text.h"
#include "wfxhost/commands.h"
#include "wfxhost/copy_job.h"
#include "wfxhost/problems.h"
#include "wfxhost/sources.h"
#include "wfxhost/streams.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

CopyOptions Options(const Job& job) {
    return {job.Has("--force"), job.Has("--update"), job.Has("--dry-run"), job.Has("--json")};
}

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
    if (!IsLocalFolder(typed))
        throw Failure("there is no folder " + Quoted(typed) + "; several sources need one");
}

/// Splits the arguments into sources and target: one argument is a source, else the last is the target.
std::vector<std::string> SourcesOf(const Job& job, std::string& target) {
    std::vector<std::string> sources = job.arguments;
    if (sources.size() > 1) {
        target = sources.back();
        sources.pop_back();
    }
    return sources;
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
    const fs::path target = typed;
    const fs::path whole = IsLocalFolder(target) ? target / name : target;
    fs::path folder = (whole.has_filename() ? whole : whole.parent_path()).lexically_normal();
    RequireParent(folder);
    return folder;
}

/// What get is to copy, put together from its sources.
class GetPlan {
public:
    GetPlan(Session& session, const Job& job) : m_session(session), m_job(job), m_lookup(session) {
        m_sources = SourcesOf(job, m_target);
        for (const std::string& typed : m_sources) {
            const std::vector<Found> found = m_lookup.Expand(typed);
            if (found.empty())
                Miss(NothingFits(typed, "file"));
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
        CopyFromPhone(m_session, std::move(m_tree), Options(m_job));
    }

private:
    void Miss(const std::string& reason) {
        if (m_sources.size() == 1)
            throw Failure(reason);
        m_tree.failures.push_back(reason);
    }

    bool IsTree(const Found& found) {
        return m_job.Has("--recursive") && (found.entry.isFolder || m_session.IsFolder(found.path));
    }

    void Add(const Found& found) {
        const bool isOnly = m_found.size() == 1 && m_sources.size() == 1;
        try {
            if (!m_paths.insert(found.path.Text()).second)
                return; // named twice
            const std::string key = LocalNameKey(found.path.Name());
            if (!isOnly && key.empty())
                throw Failure(Quoted(found.path.Text()) + ": this system can hold no file of that name");
            if (!isOnly && !m_keys.insert(key).second)
                throw Failure(Quoted(found.path.Text()) + ": another source has the same name here");
            if (isOnly ? IsTree(found) : m_job.Has("--recursive") && found.entry.isFolder)
                AddTree(found);
            else if (found.entry.isFolder)
                throw Failure(Quoted(found.path.Text()) + " is a folder; get -r copies folders");
            else
                m_tree.Add({found.path, LocalTarget(m_target, found.path.Name()), found.entry});
        } catch (const Failure& failure) {
            if (isOnly || Interrupted() || !m_session.Answers())
                throw;
            m_tree.failures.push_back(failure.what());
        }
    }

    void AddTree(const Found& found) {
        if (found.path.IsRoot() && m_job.arguments.size() == 1)
            throw Failure("the phone's root has no name; say where its copy is to be: get -r / LOCAL",
                          Status::Usage);
        const fs::path local = LocalTreeTarget(m_target, found.path.Name());
        AfterTheBeginning([&] { AddFromPhone(m_tree, m_session, found.path, local); });
    }

    Session& m_session;
    const Job& m_job;
    PhoneLookup m_lookup;
    std::string m_target = "."; // as typed
    std::vector<std::string> m_sources;
    std::vector<Found> m_found;
    std::set<std::string> m_paths; // of m_found
    std::set<std::string> m_keys;  // of the names in the target folder
    Tree m_tree;
};

/// What put is to copy, put together from its sources.
class PutPlan {
public:
    PutPlan(Session& session, const Job& job) : m_session(session), m_job(job), m_lookup(session) {
        m_sources = SourcesOf(job, m_target);
        for (const std::string& typed : m_sources) {
            const std::vector<fs::path> found = ExpandLocal(typed);
            if (found.empty())
                Miss("there is no file " + Quoted(typed) + ", and nothing fits it as a pattern");
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
        CopyToPhone(m_session, std::move(m_tree), Options(m_job));
    }

private:
    void Miss(const std::string& reason) {
        if (m_sources.size() == 1)
            throw Failure(reason);
        m_tree.failures.push_back(reason);
    }

    bool IsTree(const fs::path& local) const { return m_job.Has("--recursive") && IsLocalFolder(local); }

    /// Where a source goes on the phone. "." and "folder/" have the name of the folder that they are.
    PhonePath Destination(const fs::path& local) const {
        fs::path whole = fs::absolute(local).lexically_normal();
        if (!whole.has_filename())
            whole = whole.parent_path();
        const PhonePath typed(m_target);
        return m_isFolder ? typed.Child(whole.filename().string()) : typed;
    }

    void Add(const fs::path& local) {
        const bool isOnly = m_found.size() == 1 && m_sources.size() == 1;
        try {
            RequireSource(local);
            const PhonePath path = Destination(local);
            if (!m_lookup.Find(path.Folder()))
                throw Failure("the phone has no folder " + Quoted(path.Folder().Text()));
            if (!m_paths.insert(path.Text()).second)
                throw Failure(Quoted(local.string()) + ": another source has the same name");
            if (IsTree(local))
                AddFromHere(m_tree, local, path);
            else
                AddFile(local, path);
        } catch (const Failure& failure) {
            if (isOnly || Interrupted() || failure.ExitStatus() == Status::NoHandset)
                throw;
            m_tree.failures.push_back(failure.what());
        }
    }

    void RequireSource(const fs::path& local) const {
        std::error_code error;
        if (!fs::exists(local, error))
            throw Failure("there is no file " + Quoted(local.string()));
        if (IsTree(local))
            return;
        if (!fs::is_regular_file(local, error))
            throw Failure(Quoted(local.string()) + " is no plain file; put -r copies folders");
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

    Session& m_session;
    const Job& m_job;
    PhoneLookup m_lookup;
    std::string m_target = "/"; // as typed
    bool m_isFolder = false;    // the target is a folder, or was typed as one
    std::vector<std::string> m_sources;
    std::vector<fs::path> m_found;
    std::set<std::string> m_paths; // of the targets
    Tree m_tree;
};

void PutInputCommand(Session& session, const Job& job) {
    if (job.arguments.size() != 2)
        throw Failure("standard input has no name; say which file it is to become: put - PHONE",
                      Status::Usage);
    const PhonePath path(job.arguments[1]);
    if (path.NamesFolder() || session.IsFolder(path))
        throw Failure(Quoted(path.Text()) + " is a folder; standard input needs the name of a file");
    RequireTargetFolder(session, path);
    PutInput(session, path, Options(job));
}

} // namespace

void GetCommand(Session& session, const Job& job) {
    GetPlan(session, job).Copy();
}

void PutCommand(Session& session, const Job& job) {
    if (job.arguments[0] == kStream)
        return PutInputCommand(session, job);
    PutPlan(session, job).Copy();
}

void PrintCommand(Session& session, const Job& job) {
    Job printing = job;
    printing.arguments.push_back(kStream);
    GetPlan(session, printing).Copy();
}

} // namespace tools::wfxhost
