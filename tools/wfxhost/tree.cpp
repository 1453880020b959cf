#include "wfxhost/tree.h"

#include <algorithm>
#include <set>

#include "common/interrupt.h"
#include "common/text.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

/// Plug-ins keep only so many listings open.
constexpr int kDeepest = 100;

void StopIfInterrupted() {
    if (Interrupted())
        throw Failure("interrupted: nothing was copied");
}

void Add(Tree& tree, TreeItem item) {
    if (!item.entry.isFolder) {
        ++tree.files;
        tree.bytes += item.entry.size;
    }
    tree.items.push_back(std::move(item));
}

Entry FolderEntry() {
    Entry entry;
    entry.isFolder = true;
    return entry;
}

/// Walks the phone's side of a tree.
class PhoneScan {
public:
    explicit PhoneScan(Session& session) : m_session(session) {}

    Tree TakeTree() { return std::move(m_tree); }

    void Folder(const PhonePath& phone, const fs::path& local, int depth) {
        StopIfInterrupted();
        Add(m_tree, {phone, local, FolderEntry()});
        Session::Walk walk(m_session, phone);
        if (!walk.IsAnswered() && !m_session.Answers())
            throw Failure("the handset stopped answering: nothing was copied");
        std::set<std::string> keys;
        for (Entry entry; walk.Next(entry);) {
            const std::string key = LocalNameKey(entry.name);
            const bool isNew = keys.insert(key).second;
            if (key.empty())
                Fail(phone, entry, "this system can hold no file of that name");
            else if (!isNew)
                Fail(phone, entry, "to this system its name is the same as another one's");
            else
                Take(phone.Child(entry.name), local / entry.name, entry, depth);
        }
        if (keys.empty() && !m_session.Answers())
            throw Failure("the handset stopped answering: nothing was copied");
        if (keys.empty())
            m_tree.notes.push_back(Quoted(phone.Text()) + " is empty, or the phone did not let it be read");
    }

private:
    void Fail(const PhonePath& folder, const Entry& entry, const char* reason) {
        m_tree.failures.push_back(Quoted(folder.Text() + "/" + entry.name) + ": " + reason);
    }

    void Take(const PhonePath& phone, const fs::path& local, const Entry& entry, int depth) {
        if (!entry.isFolder)
            Add(m_tree, {phone, local, entry});
        else if (depth == kDeepest)
            m_tree.failures.push_back(Quoted(phone.Text()) + ": its folders are nested too deep");
        else if (!phone.IsTellable())
            m_tree.failures.push_back(UntellableReason(phone));
        else
            Folder(phone, local, depth + 1);
    }

    Session& m_session;
    Tree m_tree;
};

/// Walks this computer's side of a tree.
class LocalScan {
public:
    Tree TakeTree() { return std::move(m_tree); }

    void Folder(const fs::path& local, const PhonePath& phone, int depth) {
        StopIfInterrupted();
        Add(m_tree, {phone, local, FolderEntry()});
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
            Fail(found.path(), "the phone can hold no name with a backslash");
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
            entry.size = 0; // the copy will tell
        Add(m_tree, {phone, found.path(), entry});
    }

    Tree m_tree;
};

} // namespace

Tree ScanPhone(Session& session, const PhonePath& phone, const fs::path& local) {
    PhoneScan scan(session);
    scan.Folder(phone, local, 0);
    return scan.TakeTree();
}

Tree ScanLocal(const fs::path& local, const PhonePath& phone) {
    LocalScan scan;
    scan.Folder(local, phone, 0);
    return scan.TakeTree();
}

} // namespace tools::wfxhost
