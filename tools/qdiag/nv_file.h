// The text file that holds a backup of NV items.
//
// Each line holds an item number, a blank and the item's bytes in hex. Bytes missing at the end of an item
// are zeros. Empty lines and lines that begin with '#' are ignored. A carriage return may precede the line
// feed.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "qdiag/nv.h"

namespace tools::qdiag {

/// NvFileWriter writes such a file. The file has a temporary name until Finish renames it; without Finish,
/// the destructor deletes it. A file with the wanted name is therefore complete.
class NvFileWriter {
public:
    /// `comment` becomes the first line. Throws Failure when the file cannot be created.
    NvFileWriter(const std::string& path, const std::string& comment);
    ~NvFileWriter();
    NvFileWriter(const NvFileWriter&) = delete;
    NvFileWriter& operator=(const NvFileWriter&) = delete;

    void Add(unsigned short item, const NvValue& value);
    void AddComment(const std::string& line);
    /// Renames the file to its final name, replacing an older file. Throws Failure when that fails or
    /// when not everything could be written.
    void Finish();

private:
    const std::filesystem::path m_path;
    const std::filesystem::path m_partPath;
    std::ofstream m_file;
};

/// Reads such a file. Throws Failure when the file cannot be read or is malformed: it has a line of another
/// form, an item that occurs twice, or a last line without a line feed (the file was truncated).
std::map<unsigned short, NvValue> ReadNvFile(const std::string& path);

} // namespace tools::qdiag
