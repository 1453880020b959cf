#include "qdiag/archive/restorer.h"

#include <algorithm>
#include <cstdio>
#include <random>

#include "common/text.h"
#include "qdiag/efs/phone_path.h"

namespace tools::qdiag {
namespace {

using Remedy = Difference::Remedy;

constexpr DWORD kNoSpace = 28;
constexpr uint32_t kOwnerOfFile = 0600;
constexpr uint32_t kOwnerOfFolder = 0700;

std::string TemporaryPath(const std::string& path) {
    char name[32];
    std::snprintf(name, sizeof name, ".quillet-%08x", std::random_device()());
    return ChildOf(FolderOf(path), name);
}

} // namespace

Restorer::Restorer(PhoneFiles& files, const Plan& plan, const Differences& differences)
    : m_files(files), m_plan(plan), m_differences(differences) {
    for (const auto& [path, planned] : plan.entries)
        if (planned.kind == Kind::File && IsToDo(path, Remedy::Write))
            m_bytes += planned.size;
}

bool Restorer::IsToDo(const std::string& path, Remedy remedy) const {
    const auto found = m_differences.find(path);
    return found != m_differences.end() && found->second.remedy == remedy;
}

void Restorer::Report() {
    m_progress.ReportBytes(m_bytes == 0 ? 100 : static_cast<int>(m_done * 100 / m_bytes), m_bytes);
}

/// Records that an entry was written, or names it and the reason why it was not.
void Restorer::Settle(const std::string& path, const Outcome& outcome) {
    if (outcome.IsGranted()) {
        m_written.insert(path);
        return;
    }
    m_written.erase(path);
    m_progress.EndLine();
    std::fprintf(stderr, "not restored: %s: %s\n", Quoted(path).c_str(), outcome.reason.c_str());
    if (outcome.error == kNoSpace)
        throw Failure(std::string("the phone is full: ") + kUnfinished);
}

/// Makes something under a temporary name with `fill`, which gets that name, and renames it.
template <class Fill>
void Restorer::Replace(const std::string& path, Fill fill) {
    const std::string temporary = TemporaryPath(path);
    Outcome outcome;
    std::string interruption;
    try {
        outcome = fill(temporary);
        if (outcome.IsGranted())
            outcome = m_files.Rename(temporary, path);
        if (outcome.IsGranted())
            return Settle(path, outcome);
    } catch (const Failure& failure) {
        interruption = failure.what();
    }
    const bool isRemoved = m_files.Remove(temporary);
    const std::string remains =
        isRemoved ? "" : "; an incomplete copy may remain on the phone as " + Quoted(temporary);
    if (!interruption.empty())
        throw Failure(interruption + remains);
    outcome.reason += remains;
    Settle(path, outcome);
}

void Restorer::WriteFile(const std::string& path, const PlannedEntry& planned, ArchiveReader& content) {
    const uint64_t end = m_done + planned.size;
    Replace(path, [&](const std::string& temporary) {
        const uint32_t mode = planned.mode | kOwnerOfFile;
        Outcome outcome = m_files.Write(temporary, mode, [&](auto area) {
            const size_t count = content.Read(area);
            m_done += count;
            Report();
            return count;
        });
        if (outcome.IsGranted() && mode != planned.mode)
            outcome = m_files.ChangeMode(temporary, planned.mode);
        return outcome;
    });
    m_done = end;
}

void Restorer::MakeFolders() {
    for (const auto& [path, planned] : m_plan.entries)
        if (planned.kind == Kind::Folder && IsToDo(path, Remedy::Write))
            Settle(path, m_files.MakeFolder(path, planned.mode | kOwnerOfFolder));
}

void Restorer::MakeLinks() {
    for (const auto& [path, planned] : m_plan.entries) {
        if (planned.kind != Kind::Link || !IsToDo(path, Remedy::Write))
            continue;
        const std::string& target = planned.target;
        Replace(path, [&](const std::string& temporary) { return m_files.MakeLink(temporary, target); });
    }
}

void Restorer::SetModes() {
    for (auto place = m_plan.entries.rbegin(); place != m_plan.entries.rend(); ++place) {
        const auto& [path, planned] = *place;
        const bool isNewFolder = planned.kind == Kind::Folder && m_written.contains(path) &&
                                 planned.mode != (planned.mode | kOwnerOfFolder);
        if (isNewFolder || IsToDo(path, Remedy::SetMode))
            Settle(path, m_files.ChangeMode(path, planned.mode));
    }
}

void Restorer::Run() {
    m_files.SetAftermath(kUnfinished);
    MakeFolders();
    ForEachFile(m_plan, kUnfinished, [this](const auto& path, const auto& planned, auto& content) {
        if (IsToDo(path, Remedy::Write))
            WriteFile(path, planned, content);
    });
    MakeLinks();
    SetModes();
    Report();
    m_progress.EndLine();
}

} // namespace tools::qdiag
