// The text file that a backup of NV items is kept in.
//
// A line holds an item's number, a blank, and its bytes in hex; items may end early, the rest is zeros. Lines
// that begin with '#' and empty lines say nothing. Lines may end with a carriage return and a line feed.
#pragma once

#include <fstream>
#include <map>
#include <string>

#include "qdiag/nv.h"

namespace tools::qdiag {

/// NvFileWriter writes such a file. Until Finish it has another name, and it goes away when Finish is not
/// reached: a file of the wanted name is a whole one.
class NvFileWriter {
public:
    /// `comment` becomes the first lines. Throws Failure when the file cannot be made.
    NvFileWriter(const std::string& path, const std::string& comment);
    ~NvFileWriter();
    NvFileWriter(const NvFileWriter&) = delete;
    NvFileWriter& operator=(const NvFileWriter&) = delete;

    void Add(unsigned short item, const NvValue& value);
    void AddComment(const std::string& line);
    /// Finish gives the file its name; an older one of that name is replaced. Throws Failure when that cannot
    /// be done or not all could be written.
    void Finish();

private:
    const std::string m_path;
    const std::string m_partPath;
    std::ofstream m_file;
};

/// ReadNvFile reads such a file. Throws Failure when it cannot be read, and for a file in which anything is
/// wrong: a line of another form, an item that stands there twice, a last line without its end (the file was
/// cut short).
std::map<unsigned short, NvValue> ReadNvFile(const std::string& path);

} // namespace tools::qdiag
