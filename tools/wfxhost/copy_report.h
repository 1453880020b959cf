// The output of a copy: progress, notes, failures, and finally the result.
#pragma once

#include <string>

#include "common/progress.h"
#include "wfxhost/copy_job.h"

namespace tools::wfxhost {

/// CopyReport counts and prints the results of a copy. Each file of the tree is reported once.
class CopyReport {
public:
    /// Prints the notes and failures of the tree, which must outlive the report.
    CopyReport(const Tree& tree, const CopyOptions& options);

    /// Returns true when there is only one file to copy. Finish throws its failure instead of printing it.
    bool IsOneFile() const { return m_isOneFile; }

    /// Shows the progress of the file that is being copied.
    void Running(const TreeItem& item, int percent);

    void FolderMade() { ++m_folders; }
    void FolderFailed(const std::string& reason) { Fail(reason); }

    /// `remark` is a note about the copy; it may be empty.
    void Copied(const TreeItem& item, uint64_t bytes, const std::string& remark);
    void Unchanged(const TreeItem& item);
    /// Reports a file that a dry run would copy.
    void Planned(const TreeItem& item, const std::string& source, const std::string& destination);
    void LinkLeft(const TreeItem& item);
    void Failed(const TreeItem& item, const std::string& reason);

    /// Prints the result. `stop` is the reason why the copy ended early, or empty. Throws Failure unless
    /// everything was copied.
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
