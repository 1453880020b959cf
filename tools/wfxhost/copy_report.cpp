#include "wfxhost/copy_report.h"

#include <algorithm>
#include <cstdio>

#include "common/quiet.h"
#include "common/text.h"
#include "wfxhost/copy.h"

namespace tools::wfxhost {
namespace {

std::string Count(size_t number, const char* what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

} // namespace

CopyReport::CopyReport(const Tree& tree, const CopyOptions& options)
    : m_tree(tree),
      m_options(options),
      m_isOneFile(tree.items.size() == 1 && tree.files == 1 && tree.failures.empty()),
      m_progress("", !options.json && !options.dryRun) {
    for (const std::string& note : m_tree.notes)
        Note(note);
    for (const std::string& failure : m_tree.failures)
        Fail(failure);
}

void CopyReport::Running(const TreeItem& item, int percent) {
    const auto part = static_cast<uint64_t>(std::clamp(percent, 0, 100)); // a plug-in may report any number
    if (m_isOneFile)
        return m_progress.ReportBytes(static_cast<int>(part), item.entry.size);
    const uint64_t done = m_listedBytes + item.entry.size * part / 100;
    const size_t last = part == 100 ? 1 : 0;
    const uint64_t share = m_tree.bytes ? done * 100 / m_tree.bytes : (m_tried + last) * 100 / m_tree.files;
    m_progress.ReportBytes(static_cast<int>(share), m_tree.bytes,
                           std::to_string(m_files + last) + " of " + Count(m_tree.files, "file") + ", " +
                               std::to_string(m_tree.files - m_tried - last) + " left");
}

void CopyReport::Copied(const TreeItem& item, uint64_t bytes, const std::string& remark) {
    ++m_files;
    m_bytes += bytes;
    Tried(item, bytes, "copied");
    if (!remark.empty())
        Note(remark);
}

void CopyReport::Unchanged(const TreeItem& item) {
    ++m_unchanged;
    Tried(item, item.entry.size, "unchanged");
}

void CopyReport::Planned(const TreeItem& item, const std::string& source, const std::string& destination) {
    ++m_files;
    m_bytes += item.entry.size;
    Tried(item, item.entry.size, "planned");
    if (!m_options.json)
        std::printf("would copy %s to %s, %llu bytes\n", Quoted(source).c_str(), Quoted(destination).c_str(),
                    static_cast<unsigned long long>(item.entry.size));
}

void CopyReport::LinkLeft(const TreeItem& item) {
    ++m_links;
    Tried(item, 0, "link to a folder");
    Note(Quoted(item.phone.Text()) + " is a link to a folder and is not followed");
}

void CopyReport::Failed(const TreeItem& item, const std::string& reason) {
    Tried(item, 0, "failed");
    Fail(reason);
}

void CopyReport::Finish(const std::string& stop) {
    m_progress.EndLine();
    PrintResult();
    if (!m_onlyReason.empty())
        throw Failure(m_onlyReason);
    if (!stop.empty())
        throw Failure("stopped, " + stop + "; " + Missing());
    if (m_failed > 0)
        throw Failure("not everything was copied, see above; " + Missing());
}

void CopyReport::Note(const std::string& text) {
    m_progress.EndLine();
    if (!IsQuiet())
        std::fprintf(stderr, "note: %s\n", text.c_str());
}

void CopyReport::Fail(const std::string& reason) {
    m_progress.EndLine();
    if (m_isOneFile)
        m_onlyReason = reason;
    else
        std::fprintf(stderr, "not copied: %s\n", reason.c_str());
    ++m_failed;
}

void CopyReport::Tried(const TreeItem& item, uint64_t bytes, const char* state) {
    ++m_tried;
    m_listedBytes += item.entry.size;
    if (m_options.json)
        m_records += std::string(m_records.empty() ? "\n" : ",\n") + "{" +
                     NameAsJson("phone", item.phone.Text()) +
                     ", \"local\": " + JsonText(item.local.string()) +
                     ", \"bytes\": " + std::to_string(bytes) + ", \"state\": \"" + state + "\"}";
}

void CopyReport::PrintResult() const {
    if (m_options.json) {
        std::printf(
            "{\"dryRun\": %s, \"files\": [%s\n], \"folders\": %zu, \"bytes\": %llu, \"seconds\": %.3f}\n",
            m_options.dryRun ? "true" : "false", m_records.c_str(), m_folders,
            static_cast<unsigned long long>(m_bytes), m_progress.Seconds());
        return;
    }
    if (IsQuiet() || !m_onlyReason.empty())
        return;
    const std::string what = m_options.dryRun ? std::to_string(m_bytes) + " bytes would be copied"
                                              : SpeedText(m_bytes, m_progress.Seconds());
    const std::string unchanged = m_options.update ? ", " + std::to_string(m_unchanged) + " up to date" : "";
    if (m_isOneFile && !m_options.update && !m_options.dryRun)
        std::printf("%s\n", what.c_str());
    else
        std::printf("%s, %s%s, %s\n", Count(m_files, "file").c_str(), Count(m_folders, "folder").c_str(),
                    unchanged.c_str(), what.c_str());
}

std::string CopyReport::Missing() const {
    // Each entry that the scan skipped counts as one file.
    const size_t all = m_tree.files + m_tree.failures.size();
    return std::to_string(all - m_files - m_links - m_unchanged) + " of " + Count(all, "file") +
           " not copied";
}

} // namespace tools::wfxhost
