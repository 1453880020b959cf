#include "wfxhost/copy_job.h"

#include <optional>
#include <string>

#include "common/interrupt.h"
#include "common/text.h"
#include "wfxhost/copy.h"
#include "wfxhost/copy_report.h"
#include "wfxhost/sources.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

/// The file that a copy would replace.
struct TargetFile {
    uint64_t size;
    int64_t time; // seconds since 1970
};

/// Copies a tree; derived classes implement the two directions.
class CopyJob {
public:
    CopyJob(Session& session, const Tree& tree, const CopyOptions& options)
        : m_session(session), m_options(options), m_tree(tree), m_report(tree, options) {}
    virtual ~CopyJob() = default;
    CopyJob(const CopyJob&) = delete;
    CopyJob& operator=(const CopyJob&) = delete;

    void Run() {
        for (const TreeItem& item : m_tree.items) {
            if (Interrupted() && m_stop.empty())
                m_stop = "interrupted";
            if (!m_stop.empty())
                break;
            if (!m_lostFolder.empty() && item.phone.Text().starts_with(m_lostFolder))
                continue;
            if (item.entry.isFolder)
                Folder(item);
            else
                File(item);
        }
        m_report.Finish(m_stop);
    }

protected:
    /// Makes the folder of an item at the target unless it exists. Returns the reason when that fails.
    virtual std::string MakeFolder(const TreeItem& item) = 0;
    virtual CopyResult Copy(const TreeItem& item, bool force, const PercentFunction& report) = 0;
    /// Returns true when a file that could not be copied is a link to a folder.
    virtual bool IsFolderLink(const TreeItem& item) = 0;
    /// Returns the existing file or folder that an item would replace, if any.
    virtual std::optional<TargetFile> Target(const TreeItem& item) = 0;
    /// Returns the modification time of an item's source, in seconds since 1970.
    virtual int64_t Time(const TreeItem& item) = 0;
    virtual std::string Source(const TreeItem& item) const = 0;
    virtual std::string Destination(const TreeItem& item) const = 0;

    Session& m_session;
    const CopyOptions m_options;

private:
    void Folder(const TreeItem& item) {
        if (m_options.dryRun && Target(item))
            return;
        const std::string reason = m_options.dryRun ? "" : MakeFolder(item);
        if (reason.empty())
            return m_report.FolderMade();
        if (!m_session.Answers())
            m_stop = "the handset no longer answers";
        m_report.FolderFailed(reason + ", and everything in it");
        m_lostFolder = item.phone.Text() + "/";
    }

    void File(const TreeItem& item) {
        std::optional<TargetFile> target;
        if (m_options.update || m_options.dryRun)
            target = Target(item);
        const bool isSame = target && target->size == item.entry.size && Time(item) <= target->time;
        if (m_options.update && isSame)
            m_report.Unchanged(item);
        else if (!m_options.dryRun)
            CopyFile(item);
        else if (target && !m_options.force && !m_options.update)
            m_report.Failed(item, ExistsReason(Destination(item)));
        else
            m_report.Planned(item, Source(item), Destination(item));
    }

    void CopyFile(const TreeItem& item) {
        const CopyResult result = Copy(item, m_options.force || m_options.update,
                                       [&](int percent) { m_report.Running(item, percent); });
        if (result.isDone)
            return m_report.Copied(item, result.bytes, result.remark);
        if (!m_report.IsOneFile() && !result.isHopeless && IsFolderLink(item))
            return m_report.LinkLeft(item);
        m_report.Failed(item, result.remark);
        if (result.isHopeless)
            m_stop = Interrupted() ? "interrupted" : "as the other files would fail as well";
    }

    const Tree& m_tree;
    CopyReport m_report;
    std::string m_lostFolder; // the last folder that could not be made, with a '/' at the end
    std::string m_stop;       // why the copy ends early
};

class FromPhone : public CopyJob {
public:
    using CopyJob::CopyJob;

private:
    std::string MakeFolder(const TreeItem& item) override {
        std::error_code error;
        fs::create_directory(item.local, error);
        std::error_code ignored;
        if (fs::is_directory(item.local, ignored))
            return "";
        return "cannot make the folder " + Quoted(item.local.string()) +
               (error ? ": " + error.message() : ": a file has that name");
    }

    CopyResult Copy(const TreeItem& item, bool force, const PercentFunction& report) override {
        return TryGet(m_session, item.phone, item.entry, item.local, force, report);
    }

    bool IsFolderLink(const TreeItem& item) override {
        Entry entry;
        const bool hasEntries =
            item.phone.IsRepresentable() && Session::Walk(m_session, item.phone).Next(entry);
        m_session.TakeReason(); // discarded: the reason of the copy is known already
        return hasEntries;
    }

    std::optional<TargetFile> Target(const TreeItem& item) override {
        std::error_code error;
        if (!fs::exists(item.local, error))
            return std::nullopt;
        const uint64_t size = fs::is_regular_file(item.local, error) ? fs::file_size(item.local, error) : 0;
        return TargetFile{size, LocalTime(item.local)};
    }

    int64_t Time(const TreeItem& item) override { return UnixTime(item.entry.written).value_or(0); }
    std::string Source(const TreeItem& item) const override { return item.phone.Text(); }
    std::string Destination(const TreeItem& item) const override { return item.local.string(); }
};

class ToPhone : public CopyJob {
public:
    ToPhone(Session& session, const Tree& tree, const CopyOptions& options)
        : CopyJob(session, tree, options), m_before(session) {}

private:
    std::string MakeFolder(const TreeItem& item) override {
        // On some systems plug-ins refuse to make a folder that exists.
        if (item.phone.IsRoot() || m_session.MakeFolder(item.phone))
            return "";
        const std::string reason = m_session.TakeReason();
        if (m_session.IsFolder(item.phone))
            return "";
        return reason.empty() ? "the phone refused to make the folder " + Quoted(item.phone.Text()) : reason;
    }

    CopyResult Copy(const TreeItem& item, bool force, const PercentFunction& report) override {
        return TryPut(m_session, item.local, item.phone, force, report);
    }

    bool IsFolderLink(const TreeItem&) override { return false; }

    std::optional<TargetFile> Target(const TreeItem& item) override {
        const Entry* entry = m_before.Find(item.phone);
        if (!entry)
            return std::nullopt;
        return TargetFile{entry->size, UnixTime(entry->written).value_or(0)};
    }

    int64_t Time(const TreeItem& item) override { return LocalTime(item.local); }
    std::string Source(const TreeItem& item) const override { return item.local.string(); }
    std::string Destination(const TreeItem& item) const override { return item.phone.Text(); }

    PhoneLookup m_before; // the phone's files before the copy
};

} // namespace

void CopyFromPhone(Session& session, const Tree& tree, const CopyOptions& options) {
    const InterruptGuard guard;
    WithoutNoHandsetStatus([&] { FromPhone(session, tree, options).Run(); });
}

void CopyToPhone(Session& session, const Tree& tree, const CopyOptions& options) {
    const InterruptGuard guard;
    WithoutNoHandsetStatus([&] { ToPhone(session, tree, options).Run(); });
}

} // namespace tools::wfxhost
