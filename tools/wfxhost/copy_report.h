// What a copy prints: progress, notes, failures, and at its end the result.
#pragma once

#include <string>

#include "common/progress.h"
#include "wfxhost/copy_job.h"

namespace tools::wfxhost {

/// CopyReport counts what became of a tree's files and prints it. It is told about each file once.
class CopyReport {
public:
    /// Prints what the tree has to leave out. The tree must outlive the report.
    CopyReport(const Tree& tree, const CopyOptions& options);

    /// IsOneFile says whether there is only one file to copy. Its failure is thrown by Finish and not
    /// printed.
    bool IsOneFile() const { return m_isOneFile; }

    /// Running shows the percentage of the file that is being copied.
    void Running(const TreeItem& item, int percent);

    void FolderMade() { ++m_folders; }
    void FolderFailed(const std::string& reason) { Fail(reason); }

    /// `remark`: what should be known about the copy; may be empty.
    void Copied(const TreeItem& item, uint64_t bytes, const std::string& remark);
    void Unchanged(const TreeItem& item);
    /// Planned is for a file that a dry run would copy.
    void Planned(const TreeItem& item, const std::string& source, const std::string& destination);
    void LinkLeft(const TreeItem& item);
    void Failed(const TreeItem& item, const std::string& reason);

    /// Finish prints the result. Throws Failure unless everything was copied. `stop` says why the copy ended
    /// early; empty when it did not.
    void Finish(const std::string& stop);

private:
    void Note(const std::string& text);
    void Fail(const std::string& reason);
    void Tried(const TreeItem& item, uint64_t bytes, const char* state);
    void PrintResult() const;
    std::string Missing() const;

    const Tree& m_tree;
    const CopyOptions m_options;
    const bool m_isOneFile;
    Progress m_progress;
    std::string m_records; // of the files, for the JSON form
    size_t m_files = 0;    // copied
    size_t m_folders = 0;
    uint64_t m_bytes = 0;
    size_t m_tried = 0;         // files
    uint64_t m_listedBytes = 0; // of the files that were tried
    size_t m_unchanged = 0;
    size_t m_links = 0;
    size_t m_failed = 0;
    std::string m_onlyReason; // why the only file was not copied
};

} // namespace tools::wfxhost
