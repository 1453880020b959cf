// AT data mode.
#include "handset/text_mode.h"

namespace handset {
namespace {

constexpr uint8_t kFlag = 0x7E;
constexpr size_t kMaxLine = 1024;

Bytes ToBytes(const std::string& text) {
    return {text.begin(), text.end()};
}

} // namespace

std::optional<Bytes> LineCollector::Take(const uint8_t* data, size_t size, size_t& used) {
    for (used = 0; used < size;) {
        const uint8_t byte = data[used++];
        if (byte == kFlag || m_line.size() >= kMaxLine)
            m_line.clear();
        if (byte == kFlag)
            continue;
        m_line.push_back(byte);
        if (byte == '\r') {
            Bytes line;
            line.swap(m_line);
            return line;
        }
    }
    return std::nullopt;
}

Bytes AnswerToLine(const Bytes& line, bool& toDiagnostics) {
    // Half a frame or noise may precede the command.
    const std::string text(line.begin(), line.end());
    const size_t command = text.rfind("AT");
    const std::string word = command == std::string::npos ? "" : text.substr(command);
    toDiagnostics = word == "AT$QCDMG\r";
    return ToBytes(toDiagnostics || word == "AT\r" ? "\r\nOK\r\n" : "\r\nERROR\r\n");
}

} // namespace handset
