#include "qdiag/archive/compare.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "common/progress.h"
#include "common/text.h"
#include "qdiag/efs/phone_path.h"

namespace tools::qdiag {
namespace {

using Remedy = Difference::Remedy;

std::string AKind(Kind kind) {
    return std::string("a ") + KindText(kind);
}

std::string Both(const std::string& onPhone, const std::string& inArchive) {
    return onPhone + " on the phone, " + inArchive + " in the archive";
}

std::string ModeText(uint32_t mode) {
    char text[8];
    std::snprintf(text, sizeof text, "%04o", mode & 07777);
    return text;
}

std::string TextOfNew(const PlannedEntry& planned) {
    if (planned.kind == Kind::Folder)
        return "new folder";
    return planned.kind == Kind::Link ? "new link to " + Quoted(planned.target)
                                      : "new file, " + std::to_string(planned.size) + " bytes";
}

/// The phone's entries; each folder is listed when something in it is looked for.
class PhoneTree {
public:
    explicit PhoneTree(PhoneFiles& files) : m_files(files) {}

    struct Place {
        const PhoneEntry* entry = nullptr; // null: there is none
        std::string obstacle;              // why nothing can be there, or be known; empty when all is well
    };

    Place Find(const std::string& path) {
        const std::string above = FolderOf(path);
        if (above != "/") {
            Place place = Find(above);
            if (place.entry == nullptr || !place.obstacle.empty())
                return place;
            if (place.entry->kind != Kind::Folder)
                return {nullptr, Quoted(above) + " is " + AKind(place.entry->kind) + " on the phone"};
        }
        const Folder& folder = Listing(above);
        if (!folder.obstacle.empty())
            return {nullptr, folder.obstacle};
        const auto found = folder.entries.find(NameOf(path));
        return {found == folder.entries.end() ? nullptr : &found->second, ""};
    }

private:
    struct Folder {
        std::map<std::string, PhoneEntry> entries;
        std::string obstacle;
    };

    const Folder& Listing(const std::string& path) {
        const auto [place, isNew] = m_folders.try_emplace(path);
        Folder& folder = place->second;
        if (!isNew)
            return folder;
        std::vector<PhoneEntry> entries;
        const Outcome outcome = m_files.List(path, entries);
        if (!outcome.IsGranted())
            folder.obstacle = Quoted(path) + " cannot be listed: " + outcome.reason;
        for (PhoneEntry& entry : entries)
            if (entry.problem.empty())
                folder.entries.emplace(entry.name, entry);
        return folder;
    }

    PhoneFiles& m_files;
    std::map<std::string, Folder> m_folders;
};

class Comparison {
public:
    Comparison(PhoneFiles& files, const Plan& plan, const char* title)
        : m_files(files), m_tree(files), m_plan(plan), m_progress(title) {}

    /// Compares what can be compared without contents.
    void CompareEntry(const std::string& path, const PlannedEntry& planned) {
        const PhoneTree::Place place = m_tree.Find(path);
        if (!place.obstacle.empty())
            Add(path, Remedy::Impossible, place.obstacle);
        else if (place.entry == nullptr)
            Add(path, Remedy::Write, TextOfNew(planned));
        else if (planned.kind != place.entry->kind && !IsReadAs(planned.kind, place.entry->kind))
            AddKind(path, planned.kind, place.entry->kind);
        else if (planned.kind == Kind::Folder)
            CompareMode(path, planned, *place.entry);
        else if (planned.kind == Kind::Link)
            CompareTarget(path, planned);
        else if (planned.size != place.entry->size)
            AddContent(path, *place.entry,
                       "size: " + Both(std::to_string(place.entry->size), std::to_string(planned.size)));
        else
            AwaitContent(path, planned, *place.entry);
    }

    void CompareContents(const std::string& aftermath) {
        if (m_awaited.empty())
            return Report();
        ForEachFile(m_plan, aftermath, [this](const auto& path, const auto& planned, auto& content) {
            const auto found = m_awaited.find(path);
            if (found != m_awaited.end())
                CompareContent(path, planned, found->second, content);
        });
    }

    Differences Result() { return std::move(m_differences); }

private:
    /// A special entry of the phone is in the archive as a file.
    static bool IsReadAs(Kind inArchive, Kind onPhone) {
        return inArchive == Kind::File && onPhone == Kind::Special;
    }

    void Add(const std::string& path, Remedy remedy, const std::string& text) {
        m_differences.insert_or_assign(path, Difference{remedy, text});
    }

    void AddKind(const std::string& path, Kind inArchive, Kind onPhone) {
        const bool isReplaceable =
            inArchive != Kind::Folder && (onPhone == Kind::File || onPhone == Kind::Link);
        Add(path, isReplaceable ? Remedy::Write : Remedy::Impossible, Both(AKind(onPhone), AKind(inArchive)));
    }

    void AddContent(const std::string& path, const PhoneEntry& entry, const std::string& text) {
        // A new file would not be what the special entry is.
        Add(path, entry.kind == Kind::Special ? Remedy::Impossible : Remedy::Write, text);
    }

    void CompareMode(const std::string& path, const PlannedEntry& planned, const PhoneEntry& entry) {
        if (!planned.isImplied && planned.mode != entry.mode)
            Add(path, Remedy::SetMode, "mode: " + Both(ModeText(entry.mode), ModeText(planned.mode)));
    }

    void CompareTarget(const std::string& path, const PlannedEntry& planned) {
        std::string target;
        const Outcome outcome = m_files.LinkTarget(path, target);
        if (!outcome.IsGranted())
            Add(path, Remedy::Impossible, outcome.reason);
        else if (target != planned.target)
            Add(path, Remedy::Write, "target: " + Both(Quoted(target), Quoted(planned.target)));
    }

    void AwaitContent(const std::string& path, const PlannedEntry& planned, const PhoneEntry& entry) {
        if (planned.size == 0)
            return CompareMode(path, planned, entry);
        m_awaited.emplace(path, entry);
        m_bytes += planned.size;
    }

    void CompareContent(const std::string& path, const PlannedEntry& planned, const PhoneEntry& entry,
                        ArchiveReader& content) {
        const uint64_t end = m_done + planned.size;
        bool isSame = true;
        const Outcome outcome = m_files.Read(path, planned.size, [&](auto block) {
            std::array<unsigned char, Diag_FTM::kEfs2MostRead> piece;
            const auto wanted = std::span(piece).first(block.size());
            isSame = content.Read(wanted) == block.size() && std::ranges::equal(wanted, block);
            m_done += block.size();
            Report();
            return isSame;
        });
        isSame = isSame && m_done == end;
        m_done = end;
        Report();
        if (!outcome.IsGranted())
            Add(path, Remedy::Impossible, "it cannot be read: " + outcome.reason);
        else if (!isSame)
            AddContent(path, entry, "other content");
        else
            CompareMode(path, planned, entry);
    }

    void Report() {
        m_progress.ReportBytes(m_bytes == 0 ? 100 : static_cast<int>(m_done * 100 / m_bytes), m_bytes);
    }

    PhoneFiles& m_files;
    PhoneTree m_tree;
    const Plan& m_plan;
    Progress m_progress;
    Differences m_differences;
    std::map<std::string, PhoneEntry> m_awaited; // files of which the contents are to be compared
    uint64_t m_bytes = 0;
    uint64_t m_done = 0;
};

} // namespace

Differences Compare(PhoneFiles& files, const Plan& plan, const std::set<std::string>* only,
                    const std::string& aftermath, const char* title) {
    files.SetAftermath(aftermath);
    Comparison comparison(files, plan, title);
    for (const auto& [path, planned] : plan.entries)
        if (only == nullptr || only->contains(path))
            comparison.CompareEntry(path, planned);
    comparison.CompareContents(aftermath);
    return comparison.Result();
}

} // namespace tools::qdiag
