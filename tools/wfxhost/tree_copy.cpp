#include "wfxhost/tree_copy.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "common/interrupt.h"
#include "common/progress.h"
#include "common/text.h"
#include "wfxhost/copy.h"
#include "wfxhost/tree.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

std::string Count(size_t number, const char* what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

/// Carries out the copy of a tree; a direction says how.
class TreeCopy {
public:
    TreeCopy(Session& session, Tree tree, bool force)
        : m_session(session), m_force(force), m_tree(std::move(tree)) {}
    virtual ~TreeCopy() = default;
    TreeCopy(const TreeCopy&) = delete;
    TreeCopy& operator=(const TreeCopy&) = delete;

    void Run() {
        for (const std::string& note : m_tree.notes)
            Note(note);
        for (const std::string& failure : m_tree.failures)
            Fail(failure);
        for (const TreeItem& item : m_tree.items) {
            if (Interrupted())
                m_stop = "interrupted";
            if (!m_stop.empty())
                break;
            if (item.entry.isFolder)
                Folder(item);
            else
                File(item);
        }
        m_progress.EndLine();
        std::printf("%s, %s, %s\n", Count(m_files, "file").c_str(), Count(m_folders, "folder").c_str(),
                    SpeedText(m_bytes, m_progress.Seconds()).c_str());
        if (!m_stop.empty())
            throw Failure("stopped, " + m_stop + "; " + Missing());
        if (m_failed > 0)
            throw Failure("not everything was copied, see above; " + Missing());
    }

protected:
    /// MakeFolder makes sure that the target has an item's folder. Gives the reason when that fails.
    virtual std::string MakeFolder(const TreeItem& item) = 0;
    virtual CopyResult Copy(const TreeItem& item, const PercentFunction& report) = 0;
    /// IsFolderLink tells whether a file that could not be copied is a link to a folder.
    virtual bool IsFolderLink(const TreeItem& item) = 0;

    Session& m_session;
    const bool m_force;

private:
    std::string Missing() const {
        // What the scan had to leave out counts as one file each.
        const size_t all = m_tree.files + m_tree.failures.size();
        return std::to_string(all - m_files - m_links) + " of " + Count(all, "file") + " not copied";
    }

    void Note(const std::string& text) {
        m_progress.EndLine();
        std::fprintf(stderr, "note: %s\n", text.c_str());
    }

    void Fail(const std::string& reason) {
        m_progress.EndLine();
        std::fprintf(stderr, "not copied: %s\n", reason.c_str());
        ++m_failed;
    }

    void Report(const TreeItem& item, int percent) {
        const auto part = static_cast<uint64_t>(std::clamp(percent, 0, 100)); // a plug-in may say anything
        const uint64_t done = m_listedBytes + item.entry.size * part / 100;
        const uint64_t share = m_tree.bytes ? done * 100 / m_tree.bytes : m_files * 100 / m_tree.files;
        m_progress.ReportBytes(static_cast<int>(share), m_tree.bytes,
                               std::to_string(m_files) + " of " + Count(m_tree.files, "file"));
    }

    void Folder(const TreeItem& item) {
        if (IsInLostFolder(item))
            return;
        const std::string reason = MakeFolder(item);
        if (reason.empty()) {
            ++m_folders;
            return;
        }
        if (!m_session.Answers())
            m_stop = "the handset no longer answers";
        Fail(reason + ", with all that it holds");
        m_lostFolder = item.phone.Text() + "/";
    }

    void File(const TreeItem& item) {
        if (IsInLostFolder(item))
            return;
        const CopyResult result = Copy(item, [&](int percent) { Report(item, percent); });
        m_listedBytes += item.entry.size;
        if (result.isDone) {
            ++m_files;
            m_bytes += result.bytes;
            if (!result.remark.empty())
                Note(result.remark);
        } else if (!result.isHopeless && IsFolderLink(item)) {
            ++m_links;
            Note(Quoted(item.phone.Text()) + " is a link to a folder and is not followed");
        } else {
            Fail(result.remark);
            if (result.isHopeless)
                m_stop = Interrupted() ? "interrupted" : "as others would fail as well";
        }
    }

    bool IsInLostFolder(const TreeItem& item) const {
        return !m_lostFolder.empty() && item.phone.Text().starts_with(m_lostFolder);
    }

    const Tree m_tree;
    Progress m_progress;
    size_t m_files = 0; // copied
    size_t m_folders = 0;
    uint64_t m_bytes = 0;
    uint64_t m_listedBytes = 0; // of the files that were tried
    size_t m_links = 0;
    size_t m_failed = 0;
    std::string m_lostFolder; // the last one that could not be made; with a '/' at its end
    std::string m_stop;       // why it ends early
};

class FromPhone : public TreeCopy {
public:
    using TreeCopy::TreeCopy;

private:
    std::string MakeFolder(const TreeItem& item) override {
        std::error_code error;
        fs::create_directory(item.local, error);
        std::error_code ignored;
        if (fs::is_directory(item.local, ignored))
            return "";
        return "cannot make the folder " + Quoted(item.local.string()) +
               (error ? ": " + error.message() : ", where a file is");
    }

    CopyResult Copy(const TreeItem& item, const PercentFunction& report) override {
        return TryGet(m_session, item.phone, item.entry, item.local.string(), m_force, report);
    }

    bool IsFolderLink(const TreeItem& item) override {
        Entry entry;
        return item.phone.IsTellable() && Session::Walk(m_session, item.phone).Next(entry);
    }
};

class ToPhone : public TreeCopy {
public:
    using TreeCopy::TreeCopy;

private:
    std::string MakeFolder(const TreeItem& item) override {
        // Some systems' plug-ins refuse a folder that is there.
        if (item.phone.IsRoot() || m_session.MakeFolder(item.phone) || m_session.IsFolder(item.phone))
            return "";
        return "the phone refused to make the folder " + Quoted(item.phone.Text());
    }

    CopyResult Copy(const TreeItem& item, const PercentFunction& report) override {
        return TryPut(m_session, item.local.string(), item.phone, m_force, report);
    }

    bool IsFolderLink(const TreeItem&) override { return false; }
};

} // namespace

void CopyTreeFromPhone(Session& session, const PhonePath& phone, const fs::path& local, bool force) {
    const InterruptGuard guard;
    const Session::Batch batch(session, FS_STATUS_OP_GET_MULTI, phone.Folder());
    AfterTheBeginning([&] { FromPhone(session, ScanPhone(session, phone, local), force).Run(); });
}

void CopyTreeToPhone(Session& session, const fs::path& local, const PhonePath& phone, bool force) {
    const InterruptGuard guard;
    const Session::Batch batch(session, FS_STATUS_OP_PUT_MULTI, phone.Folder());
    AfterTheBeginning([&] { ToPhone(session, ScanLocal(local, phone), force).Run(); });
}

} // namespace tools::wfxhost
