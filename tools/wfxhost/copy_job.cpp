#include "wfxhost/copy_job.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "common/interrupt.h"
#include "common/progress.h"
#include "common/quiet.h"
#include "common/text.h"
#include "wfxhost/copy.h"
#include "wfxhost/sources.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

std::string Count(size_t number, const char* what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

/// The file that a copy would replace.
struct TargetFile {
    uint64_t size;
    int64_t time; // seconds since 1970
};

/// Carries a copy out; a direction says how.
class CopyJob {
public:
    CopyJob(Session& session, Tree tree, const CopyOptions& options)
        : m_session(session),
          m_options(options),
          m_tree(std::move(tree)),
          m_isOneFile(m_tree.items.size() == 1 && m_tree.files == 1 && m_tree.failures.empty()),
          m_progress("", !options.json && !options.dryRun) {}
    virtual ~CopyJob() = default;
    CopyJob(const CopyJob&) = delete;
    CopyJob& operator=(const CopyJob&) = delete;

    void Run() {
        for (const std::string& note : m_tree.notes)
            Note(note);
        for (const std::string& failure : m_tree.failures)
            Fail(failure);
        for (const TreeItem& item : m_tree.items) {
            if (Interrupted() && m_stop.empty())
                m_stop = "interrupted";
            if (!m_stop.empty())
                break;
            if (item.entry.isFolder)
                Folder(item);
            else
                File(item);
        }
        m_progress.EndLine();
        PrintResult();
        if (m_isOneFile && !m_onlyReason.empty())
            throw Failure(m_onlyReason);
        if (!m_stop.empty())
            throw Failure("stopped, " + m_stop + "; " + Missing());
        if (m_failed > 0)
            throw Failure("not everything was copied, see above; " + Missing());
    }

protected:
    /// MakeFolder makes sure that the target has an item's folder. Returns the reason when that fails.
    virtual std::string MakeFolder(const TreeItem& item) = 0;
    virtual CopyResult Copy(const TreeItem& item, bool force, const PercentFunction& report) = 0;
    /// IsFolderLink says whether a file that could not be copied is a link to a folder.
    virtual bool IsFolderLink(const TreeItem& item) = 0;
    virtual std::optional<TargetFile> Target(const TreeItem& item) = 0;
    /// Time returns when an item's source was written, in seconds since 1970.
    virtual int64_t Time(const TreeItem& item) = 0;
    virtual std::string Source(const TreeItem& item) const = 0;
    virtual std::string Destination(const TreeItem& item) const = 0;

    Session& m_session;
    const CopyOptions m_options;

private:
    std::string Missing() const {
        // What the scan had to leave out counts as one file each.
        const size_t all = m_tree.files + m_tree.failures.size();
        return std::to_string(all - m_files - m_links - m_unchanged) + " of " + Count(all, "file") +
               " not copied";
    }

    void PrintResult() const {
        if (m_options.json) {
            std::printf(
                "{\"dryRun\": %s, \"files\": [%s\n], \"folders\": %zu, \"bytes\": %llu, \"seconds\": %.3f}\n",
                m_options.dryRun ? "true" : "false", m_records.c_str(), m_folders,
                static_cast<unsigned long long>(m_bytes), m_progress.Seconds());
            return;
        }
        if (IsQuiet() || (m_isOneFile && !m_onlyReason.empty()))
            return;
        const std::string what = m_options.dryRun ? std::to_string(m_bytes) + " bytes would be copied"
                                                  : SpeedText(m_bytes, m_progress.Seconds());
        const std::string unchanged =
            m_options.update ? ", " + std::to_string(m_unchanged) + " up to date" : "";
        if (m_isOneFile && !m_options.update && !m_options.dryRun)
            std::printf("%s\n", what.c_str());
        else
            std::printf("%s, %s%s, %s\n", Count(m_files, "file").c_str(), Count(m_folders, "folder").c_str(),
                        unchanged.c_str(), what.c_str());
    }

    void Record(const TreeItem& item, uint64_t bytes, const char* state) {
        if (m_options.json)
            m_records += std::string(m_records.empty() ? "\n" : ",\n") + "{" +
                         NameAsJson("phone", item.phone.Text()) +
                         ", \"local\": " + JsonText(item.local.string()) +
                         ", \"bytes\": " + std::to_string(bytes) + ", \"state\": \"" + state + "\"}";
    }

    void Note(const std::string& text) {
        m_progress.EndLine();
        if (!IsQuiet())
            std::fprintf(stderr, "note: %s\n", text.c_str());
    }

    void Fail(const std::string& reason) {
        m_progress.EndLine();
        if (m_isOneFile)
            m_onlyReason = reason;
        else
            std::fprintf(stderr, "not copied: %s\n", reason.c_str());
        ++m_failed;
    }

    void Report(const TreeItem& item, int percent) {
        const auto part = static_cast<uint64_t>(std::clamp(percent, 0, 100)); // a plug-in may say anything
        if (m_isOneFile)
            return m_progress.ReportBytes(static_cast<int>(part), item.entry.size);
        const uint64_t done = m_listedBytes + item.entry.size * part / 100;
        const size_t tried = m_tried + (part == 100 ? 1 : 0);
        const uint64_t share = m_tree.bytes ? done * 100 / m_tree.bytes : tried * 100 / m_tree.files;
        m_progress.ReportBytes(static_cast<int>(share), m_tree.bytes,
                               std::to_string(m_files + tried - m_tried) + " of " +
                                   Count(m_tree.files, "file") + ", " + std::to_string(m_tree.files - tried) +
                                   " left");
    }

    void Folder(const TreeItem& item) {
        if (IsInLostFolder(item))
            return;
        if (m_options.dryRun) {
            m_folders += Target(item) ? 0 : 1;
            return;
        }
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
        std::optional<TargetFile> target;
        if (m_options.update || m_options.dryRun)
            target = Target(item);
        const bool isUnchanged =
            m_options.update && target && target->size == item.entry.size && Time(item) <= target->time;
        if (isUnchanged)
            ++m_unchanged;
        if (isUnchanged)
            Record(item, item.entry.size, "unchanged");
        else if (m_options.dryRun)
            Plan(item, target.has_value());
        else
            CopyFile(item);
        m_listedBytes += item.entry.size;
        ++m_tried;
    }

    void Plan(const TreeItem& item, bool exists) {
        if (exists && !m_options.force && !m_options.update) {
            Record(item, item.entry.size, "failed");
            return Fail(ExistsReason(Destination(item)));
        }
        ++m_files;
        m_bytes += item.entry.size;
        Record(item, item.entry.size, "planned");
        if (!m_options.json)
            std::printf("would copy %s to %s, %llu bytes\n", Quoted(Source(item)).c_str(),
                        Quoted(Destination(item)).c_str(), static_cast<unsigned long long>(item.entry.size));
    }

    void CopyFile(const TreeItem& item) {
        const CopyResult result =
            Copy(item, m_options.force || m_options.update, [&](int percent) { Report(item, percent); });
        if (result.isDone) {
            ++m_files;
            m_bytes += result.bytes;
            Record(item, result.bytes, "copied");
            if (!result.remark.empty())
                Note(result.remark);
        } else if (!m_isOneFile && !result.isHopeless && IsFolderLink(item)) {
            ++m_links;
            Note(Quoted(item.phone.Text()) + " is a link to a folder and is not followed");
        } else {
            Record(item, 0, "failed");
            Fail(result.remark);
            if (result.isHopeless)
                m_stop = Interrupted() ? "interrupted" : "as others would fail as well";
        }
    }

    bool IsInLostFolder(const TreeItem& item) const {
        return !m_lostFolder.empty() && item.phone.Text().starts_with(m_lostFolder);
    }

    const Tree m_tree;
    const bool m_isOneFile;
    Progress m_progress;
    std::string m_records; // for the JSON form
    size_t m_files = 0;    // copied
    size_t m_folders = 0;
    uint64_t m_bytes = 0;
    size_t m_tried = 0;         // files
    uint64_t m_listedBytes = 0; // of the files that were tried
    size_t m_unchanged = 0;
    size_t m_links = 0;
    size_t m_failed = 0;
    std::string m_onlyReason; // why the only file was not copied
    std::string m_lostFolder; // the last one that could not be made; with a '/' at its end
    std::string m_stop;       // why it ends early
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
               (error ? ": " + error.message() : ", where a file is");
    }

    CopyResult Copy(const TreeItem& item, bool force, const PercentFunction& report) override {
        return TryGet(m_session, item.phone, item.entry, item.local.string(), force, report);
    }

    bool IsFolderLink(const TreeItem& item) override {
        Entry entry;
        const bool hasEntries = item.phone.IsTellable() && Session::Walk(m_session, item.phone).Next(entry);
        m_session.TakeReason(); // of the question; the copy's own reason is known
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
    ToPhone(Session& session, Tree tree, const CopyOptions& options)
        : CopyJob(session, std::move(tree), options), m_before(session) {}

private:
    std::string MakeFolder(const TreeItem& item) override {
        // Some systems' plug-ins refuse a folder that is there.
        if (item.phone.IsRoot() || m_session.MakeFolder(item.phone))
            return "";
        const std::string reason = m_session.TakeReason();
        if (m_session.IsFolder(item.phone))
            return "";
        return reason.empty() ? "the phone refused to make the folder " + Quoted(item.phone.Text()) : reason;
    }

    CopyResult Copy(const TreeItem& item, bool force, const PercentFunction& report) override {
        return TryPut(m_session, item.local.string(), item.phone, force, report);
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

void CopyFromPhone(Session& session, Tree tree, const CopyOptions& options) {
    const InterruptGuard guard;
    AfterTheBeginning([&] { FromPhone(session, std::move(tree), options).Run(); });
}

void CopyToPhone(Session& session, Tree tree, const CopyOptions& options) {
    const InterruptGuard guard;
    AfterTheBeginning([&] { ToPhone(session, std::move(tree), options).Run(); });
}

} // namespace tools::wfxhost
