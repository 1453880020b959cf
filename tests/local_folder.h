// Temporary folders for tests.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

/// A temporary folder for local files. The destructor removes it.
class LocalFolder {
public:
    LocalFolder() {
        std::string sPattern = (std::filesystem::temp_directory_path() / "quillet-files-XXXXXX").string();
        EXPECT_NE(mkdtemp(sPattern.data()), nullptr);
        m_path = sPattern;
    }
    ~LocalFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    LocalFolder(const LocalFolder&) = delete;
    LocalFolder& operator=(const LocalFolder&) = delete;

    std::string Path(const std::string& sName = "") const { return (m_path / sName).string(); }
    /// Creates a file and returns its path.
    std::string Write(const std::string& sName, const std::vector<unsigned char>& content) const {
        std::ofstream(Path(sName), std::ios::binary) << std::string(content.begin(), content.end());
        return Path(sName);
    }
    bool Has(const std::string& sName) const { return std::filesystem::exists(m_path / sName); }
    std::vector<unsigned char> Read(const std::string& sName) const {
        std::ifstream file(Path(sName), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

private:
    std::filesystem::path m_path;
};

/// Returns the number of entries in a folder.
inline size_t CountIn(const char* sFolder) {
    const std::filesystem::directory_iterator entries(sFolder);
    return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}
