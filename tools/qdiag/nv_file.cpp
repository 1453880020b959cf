#include "qdiag/nv_file.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <iterator>
#include <string_view>

#include "common/local_path.h"
#include "common/text.h"
#include "qdiag/hex.h"

namespace tools::qdiag {
namespace {

namespace fs = std::filesystem;

std::string ReadWhole(const std::string& path) {
    std::error_code ignored;
    std::ifstream file(LocalPath(path), std::ios::binary);
    if (!file || fs::is_directory(LocalPath(path), ignored))
        throw Failure("the file " + Quoted(path) + " cannot be read");
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Returns false for a line of another form.
bool ParseLine(std::string_view line, unsigned short& item, NvValue& value) {
    const auto [stop, error] = std::from_chars(line.data(), line.data() + line.size(), item);
    const auto digits = static_cast<size_t>(stop - line.data());
    if (error != std::errc() || digits == line.size() || line[digits] != ' ')
        return false;
    const std::optional<Bytes> bytes = ParseHex(line.substr(digits));
    if (!bytes || bytes->empty() || bytes->size() > value.size())
        return false;
    value.fill(0);
    std::ranges::copy(*bytes, value.begin());
    return true;
}

} // namespace

NvFileWriter::NvFileWriter(const std::string& path, const std::string& comment)
    : m_path(LocalPath(path)), m_partPath(LocalPath(path + ".part")) {
    if (fs::exists(m_partPath))
        throw Failure(Quoted(m_partPath.string()) + " already exists; the backup is written there first");
    m_file.open(m_partPath, std::ios::binary | std::ios::trunc);
    if (!m_file)
        throw Failure("the file " + Quoted(m_partPath.string()) + " cannot be created");
    AddComment(comment);
}

NvFileWriter::~NvFileWriter() {
    std::error_code ignored;
    if (m_file.is_open()) {
        m_file.close();
        fs::remove(m_partPath, ignored);
    }
}

void NvFileWriter::Add(unsigned short item, const NvValue& value) {
    m_file << item << ' ' << HexText(value) << '\n';
}

void NvFileWriter::AddComment(const std::string& line) {
    m_file << "# " << Printable(line) << '\n';
}

void NvFileWriter::Finish() {
    std::error_code error;
    m_file.close();
    if (m_file)
        fs::rename(m_partPath, m_path, error);
    if (m_file && !error)
        return;
    std::error_code ignored;
    fs::remove(m_partPath, ignored);
    throw Failure("the file " + Quoted(m_path.string()) + " could not be written");
}

std::map<unsigned short, NvValue> ReadNvFile(const std::string& path) {
    const std::string text = ReadWhole(path);
    std::map<unsigned short, NvValue> items;
    size_t number = 0;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = text.find('\n', begin);
        const std::string place = Quoted(path) + ", line " + std::to_string(++number) + ": ";
        if (end == std::string::npos)
            throw Failure(place + "the line is incomplete; the file was truncated");
        std::string_view line(text.data() + begin, end - begin);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        begin = end + 1;
        if (line.empty() || line.starts_with('#'))
            continue;
        unsigned short item = 0;
        NvValue value;
        if (!ParseLine(line, item, value))
            throw Failure(place + "expected an item number and 1 to 128 bytes in hex");
        if (!items.emplace(item, value).second)
            throw Failure(place + ItemName(item) + " occurs twice");
    }
    return items;
}

} // namespace tools::qdiag
