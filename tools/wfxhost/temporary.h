// Files and folders of this program that it removes again.
#pragma once

#include <filesystem>
#include <string>

namespace tools::wfxhost {

/// FreshName returns a name that no other file is likely to have: `lead`, eight random hex digits, `ending`.
std::string FreshName(const char* lead, const char* ending);

/// TemporaryFolder is a folder among the system's temporary files. It is removed with its content at the end
/// of the object. Throws Failure when it cannot be made.
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
