// Temporary files and folders.
#pragma once

#include <filesystem>
#include <string>

namespace tools::wfxhost {

/// Returns a name that no other file is likely to have: `lead`, eight random hex digits, `ending`.
std::string FreshName(const char* lead, const char* ending);

/// TemporaryFolder is a folder in the system's folder for temporary files. The destructor removes it with its
/// content. The constructor throws Failure when it cannot be made.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    std::filesystem::path File(const char* name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

} // namespace tools::wfxhost
