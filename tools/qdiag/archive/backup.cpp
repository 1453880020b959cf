// The efs backup command: copies the phone's files into a tar archive.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "common/interrupt.h"
#include "common/progress.h"
#include "common/text.h"
#include "qdiag/archive/checksum.h"
#include "qdiag/archive/identity.h"
#include "qdiag/archive/spool.h"
#include "qdiag/archive/writer.h"
#include "qdiag/commands.h"
#include "qdiag/efs/phone_path.h"

namespace tools::qdiag {
namespace {

constexpr const char* kUndone = "no backup was written";

/// An entry of the phone that is to be kept.
struct Found {
    std::string path;
    PhoneEntry entry;
};

bool IsSameVersion(const PhoneEntry& a, const PhoneEntry& b) {
    return a.size == b.size && a.modified == b.modified && a.changed == b.changed;
}

class Backup {
public:
    Backup(const Phone& phone, const std::string& file)
        : m_files(phone), m_spool(file), m_archive(file, IdentityOf(phone).Stored()) {
        m_files.SetAftermath(kUndone);
    }

    /// Finds everything in a folder.
    void Scan(const std::string& folder) {
        m_progress.emplace("listing");
        if (folder != "/")
            m_found.push_back({folder, StatusOf(folder)});
        ListInto(folder);
        if (m_found.empty() && !m_firstReason.empty())
            throw Failure(m_firstReason);
        m_progress->Report(100, std::to_string(m_found.size()) + " entries");
    }

    void Copy() {
        m_progress.emplace("reading");
        for (const Found& found : m_found) {
            if (found.entry.kind == Kind::Folder)
                KeepWhole(found, "");
            else if (found.entry.kind == Kind::Link)
                CopyLink(found);
            else
                CopyFile(found);
        }
        m_archive.Finish();
        m_done = m_bytes;
        Report();
        m_progress.reset();
    }

    size_t Kept() const { return m_kept; }
    size_t LeftOut() const { return m_leftOut; }

private:
    void LeaveOut(const std::string& path, const std::string& reason) {
        m_progress->EndLine();
        std::fprintf(stderr, "left out: %s: %s\n", Quoted(path).c_str(), reason.c_str());
        ++m_leftOut;
        if (m_firstReason.empty())
            m_firstReason = Quoted(path) + ": " + reason;
    }

    void Report() {
        const int percent = m_bytes == 0 ? 100 : static_cast<int>(m_done * 100 / m_bytes);
        m_progress->ReportBytes(percent, m_bytes,
                                std::to_string(m_kept) + " of " + std::to_string(m_found.size()));
    }

    /// The status of the folder that is to be kept.
    PhoneEntry StatusOf(const std::string& folder) {
        std::string target;
        if (m_files.LinkTarget(folder, target).IsGranted())
            throw Failure(Quoted(folder) + " is a link to " + Quoted(target) + "; name the folder itself");
        PhoneEntry entry;
        const Outcome outcome = m_files.Stat(folder, entry);
        if (!outcome.IsGranted())
            throw Failure(Quoted(folder) + ": " + outcome.reason);
        if (entry.kind != Kind::Folder)
            throw Failure(Quoted(folder) + " is not a folder");
        return entry;
    }

    /// Folders are nested as deep as the phone's longest path allows, so recursion is limited.
    void ListInto(const std::string& folder) {
        std::vector<PhoneEntry> entries;
        const Outcome outcome = m_files.List(folder, entries);
        if (!outcome.IsGranted())
            LeaveOut(folder, "its content: " + outcome.reason);
        for (PhoneEntry& entry : entries) {
            const std::string path = ChildOf(folder, entry.name);
            if (!entry.problem.empty()) {
                LeaveOut(path, entry.problem);
                continue;
            }
            const bool isFolder = entry.kind == Kind::Folder;
            m_bytes += isFolder || entry.kind == Kind::Link ? 0 : entry.size;
            m_found.push_back({path, std::move(entry)});
            if (isFolder)
                ListInto(path);
        }
        m_progress->Report(0, std::to_string(m_found.size()) + " entries");
    }

    void CopyLink(const Found& found) {
        std::string target;
        Outcome outcome = m_files.LinkTarget(found.path, target);
        if (outcome.IsGranted() && target.size() > PhoneFiles::kLongestTarget)
            outcome.reason = "its target is too long";
        if (!outcome.IsGranted())
            return LeaveOut(found.path, outcome.reason);
        PhoneEntry ignored;
        if (m_files.Stat(found.path, ignored).error == EFS2_ERROR_NOT_THERE)
            return LeaveOut(found.path, "a broken link; it leads to " + Quoted(target));
        KeepWhole(found, target);
    }

    /// Copies a file of which size and times are the same before and after. One that has changed since it was
    /// listed gets a second chance.
    void CopyFile(const Found& found) {
        PhoneEntry before = found.entry;
        const uint64_t begin = m_done;
        for (int i = 0; i < 2; ++i) {
            m_done = begin;
            ArchiveEntry kept = EntryOf(found, before);
            Checksum checksum(kept);
            PhoneEntry after;
            Outcome outcome = ReadContent(found.path, before.size, checksum);
            if (outcome.IsGranted())
                outcome = m_files.Stat(found.path, after);
            if (!outcome.IsGranted())
                return LeaveOut(found.path, outcome.reason);
            if (m_spool.Size() == after.size && IsSameVersion(before, after)) {
                kept.checksum = checksum.Text();
                Keep(kept);
                return m_spool.CopyTo([this](auto piece) { m_archive.Append(piece); });
            }
            before = after;
        }
        LeaveOut(found.path, "it changed while it was copied");
    }

    Outcome ReadContent(const std::string& path, uint32_t size, Checksum& checksum) {
        m_spool.Clear();
        return m_files.Read(path, size, [&](auto block) {
            m_spool.Append(block);
            checksum.Append(block);
            m_done = std::min(m_bytes, m_done + block.size());
            Report();
            return true;
        });
    }

    /// An entry of a special kind is kept as a file.
    static ArchiveEntry EntryOf(const Found& found, const PhoneEntry& entry) {
        ArchiveEntry kept;
        const bool isFolder = found.entry.kind == Kind::Folder;
        kept.name = found.path.substr(1) + (isFolder ? "/" : "");
        kept.kind = found.entry.kind == Kind::Special ? Kind::File : found.entry.kind;
        kept.mode = entry.mode;
        kept.size = kept.kind == Kind::File ? entry.size : 0;
        kept.accessed = entry.accessed;
        kept.modified = entry.modified;
        kept.changed = entry.changed;
        return kept;
    }

    /// Keeps a folder or link.
    void KeepWhole(const Found& found, const std::string& target) {
        ArchiveEntry kept = EntryOf(found, found.entry);
        kept.target = target;
        kept.checksum = Checksum(kept).Text();
        Keep(kept);
    }

    void Keep(const ArchiveEntry& entry) {
        m_archive.Begin(entry);
        ++m_kept;
        Report();
    }

    PhoneFiles m_files;
    Spool m_spool;
    ArchiveWriter m_archive;
    std::vector<Found> m_found;
    uint64_t m_bytes = 0; // of all files
    uint64_t m_done = 0;
    size_t m_kept = 0;
    size_t m_leftOut = 0;
    std::string m_firstReason;
    std::optional<Progress> m_progress;
};

void RequireFreeName(const Job& job) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    const std::string& path = job.arguments[0];
    const fs::file_status status = fs::status(path, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status))
        throw Failure(Quoted(path) + " is not a regular file");
    if (fs::exists(status) && !job.Has("--force"))
        throw Failure(Quoted(path) + " already exists; --force replaces it");
}

} // namespace

void EfsBackupCommand(const Job& job) {
    const std::string& path = job.arguments[0];
    const std::string folder = job.arguments.size() < 2 ? "/" : ParsePhonePath(job.arguments[1]);
    RequireFreeName(job);
    UsePlainNames();
    const Phone phone(job);
    const InterruptGuard guard;
    Backup backup(phone, path);
    backup.Scan(folder);
    backup.Copy();
    std::printf("%zu entries kept in %s\n", backup.Kept(), Printable(path).c_str());
    if (backup.LeftOut() > 0)
        throw Failure("entries that were left out: " + std::to_string(backup.LeftOut()));
}

} // namespace tools::qdiag
