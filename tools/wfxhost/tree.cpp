#include "wfxhost/tree.h"

#include <algorithm>
#include <chrono>
#include <set>

#include "common/interrupt.h"
#include "common/local_path.h"
#include "common/text.h"
#include "wfxhost/system.h"
#include "wfxhost/walk.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUndone = "nothing was copied";

Entry FolderEntry() {
    Entry entry;
    entry.isFolder = true;
    return entry;
}

/// Collects the phone's side of a tree.
class PhoneScan : public Visitor {
public:
    PhoneScan(Tree& tree, fs::path local) : m_tree(tree), m_folders{{std::move(local), {}}} {}

    bool Enter(const PhonePath& path, const Entry&, int depth) override {
        if (depth > 0) {
            if (!IsPossible(path))
                return false;
            m_folders.push_back({m_folders.back().local / LocalPath(path.Name()), {}});
        }
        m_tree.Add({path, m_folders.back().local, FolderEntry()});
        return true;
    }

    void Leave(const PhonePath&, int depth) override {
        if (depth > 0)
            m_folders.pop_back();
    }

    void File(const PhonePath& path, const Entry& entry, int) override {
        if (IsPossible(path))
            m_tree.Add({path, m_folders.back().local / LocalPath(path.Name()), entry});
    }

    void Empty(const PhonePath& path, const std::string& reason) override {
        if (!reason.empty())
            LeftOut(reason);
        else
            m_tree.notes.push_back(Quoted(path.Text()) + " is empty, or the phone refused to list it");
    }

    void LeftOut(const std::string& reason) override { m_tree.failures.push_back(reason); }

private:
    struct Folder {
        fs::path local;
        std::set<std::string> keys; // of the names in it
    };

    /// Returns true when this system can store an entry beside the others of its folder.
    bool IsPossible(const PhonePath& path) {
        const std::string key = LocalNameKey(path.Name());
        if (key.empty())
            LeftOut(Quoted(path.Text()) + ": this system cannot store a file with that name");
        else if (!m_folders.back().keys.insert(key).second)
            LeftOut(Quoted(path.Text()) + ": on this system its name equals that of another entry");
        else
            return true;
        return false;
    }

    Tree& m_tree;
    std::vector<Folder> m_folders; // those that were entered and not left
};

/// Collects this computer's side of a tree.
class LocalScan {
public:
    explicit LocalScan(Tree& tree) : m_tree(tree) {}

    void Folder(const fs::path& local, const PhonePath& phone, int depth) {
        if (Interrupted())
            throw Failure(std::string("interrupted: ") + kUndone);
        m_tree.Add({phone, local, FolderEntry()});
        std::error_code error;
        std::vector<fs::directory_entry> entries;
        for (fs::directory_iterator it(local, error), end; !error && it != end; it.increment(error))
            entries.push_back(*it);
        if (error)
            Fail(local, "cannot be read: " + error.message());
        std::ranges::sort(entries, {}, [](const fs::directory_entry& entry) { return entry.path(); });
        for (const fs::directory_entry& entry : entries)
            Take(entry, phone, depth);
    }

private:
    void Fail(const fs::path& local, const std::string& reason) {
        m_tree.failures.push_back(Quoted(local.string()) + ": " + reason);
    }

    void Take(const fs::directory_entry& found, const PhonePath& folder, int depth) {
        const std::string name = found.path().filename().string();
        std::error_code error;
        if (name.find('\\') != std::string::npos)
            Fail(found.path(), "a name with a backslash cannot be passed to a plug-in");
        else if (found.is_directory(error) && found.is_symlink(error))
            m_tree.notes.push_back(Quoted(found.path().string()) +
                                   " is a link to a folder and is not followed");
        else if (found.is_directory(error) && depth == kDeepest)
            Fail(found.path(), "its folders are nested too deep");
        else if (found.is_directory(error))
            Folder(found.path(), folder.Child(name), depth + 1);
        else if (found.is_regular_file(error))
            File(found, folder.Child(name));
        else
            Fail(found.path(), "is neither file nor folder");
    }

    void File(const fs::directory_entry& found, const PhonePath& phone) {
        std::error_code error;
        Entry entry;
        entry.size = found.file_size(error);
        if (error)
            entry.size = 0; // the copy will fail
        m_tree.Add({phone, found.path(), entry});
    }

    Tree& m_tree;
};

} // namespace

void Tree::Add(TreeItem item) {
    if (!item.entry.isFolder) {
        ++files;
        bytes += item.entry.size;
    }
    items.push_back(std::move(item));
}

void AddFromPhone(Tree& tree, Session& session, const PhonePath& phone, const fs::path& local) {
    PhoneScan scan(tree, local);
    WalkPhone(session, phone, FolderEntry(), scan, kUndone);
}

void AddFromComputer(Tree& tree, const fs::path& local, const PhonePath& phone) {
    LocalScan(tree).Folder(local, phone, 0);
}

int64_t LocalTime(const fs::path& file) {
    using namespace std::chrono;
    std::error_code error;
    const fs::file_time_type time = fs::last_write_time(file, error);
    return error ? 0 : int64_t{floor<seconds>(file_clock::to_sys(time)).time_since_epoch().count()};
}

} // namespace tools::wfxhost
