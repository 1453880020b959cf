#include "qdiag/archive/plan.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <set>

#include "common/failure.h"
#include "common/text.h"
#include "qdiag/archive/checksum.h"
#include "qdiag/efs/phone_path.h"

namespace tools::qdiag {
namespace {

constexpr const char* kNothing = "nothing was written";

/// Returns why an entry's name cannot be a path on the phone; empty when it can.
std::string ProblemOfName(const std::string& name) {
    if (name.empty())
        return "it has no name";
    if (name.starts_with('/'))
        return "its path is absolute";
    for (size_t begin = 0; begin <= name.size();) {
        const size_t end = std::min(name.find('/', begin), name.size());
        if (name.substr(begin, end - begin) == "..")
            return "its path has \"..\" in it";
        begin = end + 1;
    }
    return "";
}

class Planner {
public:
    Planner(Plan& plan, const std::string& folder) : m_plan(plan), m_folder(folder) {}

    void Add(const ArchiveEntry& entry, ArchiveReader& archive) {
        const std::string problem = ProblemOf(entry);
        if (!problem.empty())
            Complain(entry.name, problem);
        else
            Take(entry);
        CheckContent(entry, archive);
    }

    void Finish() {
        for (const auto& [path, entry] : m_plan.entries)
            RequireFolders(path);
        if (m_complaints > 0)
            throw Failure("the archive has entries that cannot be restored (" + std::to_string(m_complaints) +
                          "): " + kNothing);
        AddImpliedFolders();
    }

private:
    void Complain(const std::string& name, const std::string& problem) {
        std::fprintf(stderr, "refused: %s: %s\n", Quoted(name).c_str(), problem.c_str());
        ++m_complaints;
    }

    static std::string ProblemOf(const ArchiveEntry& entry) {
        if (entry.kind == Kind::Special)
            return std::string("it is ") + entry.kindText;
        if (entry.size > std::numeric_limits<uint32_t>::max())
            return "it is too large for a phone";
        if (entry.kind == Kind::Link &&
            (entry.target.empty() || entry.target.find('\0') != std::string::npos))
            return "it is a link to nothing";
        if (entry.target.size() > PhoneFiles::kLongestTarget)
            return "its target is too long";
        return ProblemOfName(entry.name);
    }

    void CheckContent(const ArchiveEntry& entry, ArchiveReader& archive) {
        std::array<unsigned char, 65536> piece;
        Checksum checksum(entry);
        uint64_t size = 0;
        while (const size_t count = archive.Read(piece)) {
            checksum.Append(std::span(piece).first(count));
            size += count;
        }
        if (entry.kind == Kind::File && size != entry.size)
            Complain(entry.name, "its content has another size than it says");
        else if (!entry.checksum.empty() && entry.checksum != checksum.Text())
            Complain(entry.name, "its checksum is wrong, so the archive is damaged");
    }

    void Take(const ArchiveEntry& entry) {
        const std::string path = ParsePhonePath(entry.name);
        m_plan.order.emplace_back();
        if (path == "/" && entry.kind != Kind::Folder)
            return Complain(entry.name, "it would replace the phone's root");
        if (path == "/" || !IsWithin(path, m_folder))
            return;
        const PlannedEntry planned = {entry.kind, entry.mode & 07777, static_cast<uint32_t>(entry.size),
                                      entry.target, false};
        if (!m_plan.entries.emplace(path, planned).second)
            return Complain(entry.name, "it occurs twice");
        m_plan.order.back() = path;
    }

    /// What is above an entry must be a folder: nothing is written through a link of the archive.
    void RequireFolders(const std::string& path) {
        for (std::string above = FolderOf(path); above != "/"; above = FolderOf(above)) {
            const auto found = m_plan.entries.find(above);
            if (found != m_plan.entries.end() && found->second.kind != Kind::Folder)
                Complain(path.substr(1), "it lies below an entry that is no folder");
        }
    }

    void AddImpliedFolders() {
        std::set<std::string> folders;
        for (const auto& [path, entry] : m_plan.entries)
            for (std::string above = FolderOf(path); above != "/" && folders.insert(above).second;)
                above = FolderOf(above);
        PlannedEntry implied;
        implied.isImplied = true;
        for (const std::string& folder : folders)
            m_plan.entries.emplace(folder, implied);
    }

    Plan& m_plan;
    const std::string m_folder;
    size_t m_complaints = 0;
};

} // namespace

Plan MakePlan(const std::string& file, const std::string& folder) {
    Plan plan;
    plan.file = file;
    ArchiveReader archive(file, kNothing);
    Planner planner(plan, folder);
    for (ArchiveEntry entry; archive.Next(entry);)
        planner.Add(entry, archive);
    planner.Finish();
    plan.identity = archive.Identity();
    return plan;
}

void ForEachFile(const Plan& plan, const std::string& aftermath, const FileVisitor& visit) {
    ArchiveReader archive(plan.file, aftermath);
    size_t number = 0;
    for (ArchiveEntry entry; archive.Next(entry); ++number) {
        if (number >= plan.order.size())
            throw Failure("the archive was changed meanwhile: " + aftermath);
        const std::string& path = plan.order[number];
        if (path.empty())
            continue;
        const PlannedEntry& planned = plan.entries.at(path);
        if (!ProblemOfName(entry.name).empty() || ParsePhonePath(entry.name) != path ||
            entry.kind != planned.kind || entry.size != planned.size)
            throw Failure("the archive was changed meanwhile: " + aftermath);
        if (planned.kind == Kind::File)
            visit(path, planned, archive);
    }
}

} // namespace tools::qdiag
