// Writing what differs to the phone.
#pragma once

#include <optional>
#include <set>
#include <string>

#include "common/progress.h"
#include "qdiag/archive/compare.h"

namespace tools::qdiag {

/// The end of the text of failures once something may have been written.
constexpr const char* kUnfinished = "the restore is not complete; start it again to go on";

/// Restorer writes the differences of a plan that can be written. Files and links get a temporary name beside
/// their own (".quillet-" and eight hex digits) and are renamed when they are complete; after a failure the
/// temporary file is removed.
class Restorer {
public:
    /// All arguments must outlive the object.
    Restorer(PhoneFiles& files, const Plan& plan, const Differences& differences);

    /// Writes: folders, then files, then links, then permissions, those of inner folders first. Names what
    /// the phone refuses on standard error and goes on. Throws Failure after Ctrl-C, when the phone stops
    /// answering or is full, and when the archive cannot be read.
    void Run();

    /// The paths that were written.
    const std::set<std::string>& Written() const { return m_written; }

private:
    bool IsToDo(const std::string& path, Difference::Remedy remedy) const;
    void Settle(const std::string& path, const Outcome& outcome);
    template <class Fill>
    void Replace(const std::string& path, Fill fill);
    void WriteFile(const std::string& path, const PlannedEntry& planned, ArchiveReader& content);
    void MakeFolders();
    void MakeLinks();
    void SetModes();
    void Report();

    PhoneFiles& m_files;
    const Plan& m_plan;
    const Differences& m_differences;
    Progress m_progress{"writing"};
    std::set<std::string> m_written;
    uint64_t m_bytes = 0; // of the files to be written
    uint64_t m_done = 0;
};

} // namespace tools::qdiag
