#include "link/log_playback.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

#include "link/connection_access.h"
#include "link/crc16.h"

namespace {

constexpr size_t kMaxLine = 50000; // with its line feed
constexpr size_t kLeastLine = 19;  // likewise

/// OpenReadable opens a file that is empty or whose first byte can be read; null otherwise (some systems can
/// open a folder).
std::FILE* OpenReadable(const char* sFileName) {
    std::FILE* pFile = std::fopen(sFileName, "rb");
    if (pFile == nullptr)
        return nullptr;
    if (const int iFirst = std::getc(pFile); iFirst != EOF || std::ferror(pFile) == 0) {
        std::rewind(pFile);
        return pFile;
    }
    std::fclose(pFile);
    return nullptr;
}

/// SizeOf returns the current size of a file; negative when it is unknown.
long SizeOf(std::FILE* pFile) {
    const long iSize = std::fseek(pFile, 0, SEEK_END) == 0 ? std::ftell(pFile) : -1;
    std::rewind(pFile);
    return iSize;
}

/// ReadLine reads a line without its line feed and keeps its first kMaxLine characters. False at the end of
/// the file.
bool ReadLine(std::FILE* pFile, std::string& line) {
    line.clear();
    int iCharacter = std::getc(pFile);
    const bool bThere = iCharacter != EOF;
    for (; iCharacter != EOF && iCharacter != '\n'; iCharacter = std::getc(pFile))
        if (line.size() < kMaxLine)
            line.push_back(static_cast<char>(iCharacter));
    return bThere;
}

/// SkipBehind removes everything up to and including the first c; false when there is none.
bool SkipBehind(std::string_view& text, char c) {
    const size_t iFound = text.find(c);
    text.remove_prefix(iFound == std::string_view::npos ? text.size() : iFound + 1);
    return iFound != std::string_view::npos;
}

/// HexTextOf returns the text after the colon of a line that records a received packet; empty for other
/// lines.
std::string_view HexTextOf(std::string_view line) {
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    const size_t iSize = line.size() + 1;
    if (iSize < kLeastLine || iSize > kMaxLine || !SkipBehind(line, ',') || !SkipBehind(line, ','))
        return {};
    if (!line.starts_with("ASYNC REC") && !line.starts_with("SYNC REC--listener--"))
        return {};
    return SkipBehind(line, ':') ? line : std::string_view();
}

/// DigitValue returns the value of a hex digit, -1 for any other character.
int DigitValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// ParseHex reads pairs of digits, each followed by one separator, into a packet. False for any other text
/// and for more bytes than a packet holds.
bool ParseHex(std::string_view text, QueueItem& packet) {
    constexpr size_t kStep = 3;
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    text = text.substr(0, text.find_last_not_of(' ') + 1);
    packet.length = 0;
    for (; !text.empty(); text.remove_prefix(std::min(kStep, text.size()))) {
        const int iHigh = DigitValue(text[0]);
        const int iLow = text.size() > 1 ? DigitValue(text[1]) : -1;
        const bool bSeparated = text.size() <= 2 || DigitValue(text[2]) < 0;
        if (iHigh < 0 || iLow < 0 || !bSeparated || packet.length == kMaxPacketSize)
            return false;
        packet.data[packet.length++] = static_cast<unsigned char>(iHigh << 4 | iLow);
    }
    return true;
}

} // namespace

bool LogPlayback::StartLogFilePlaybackMode(const char* sFileName, unsigned char bKeepLastTwo) {
    const ConnectionAccess connection(m_connection);
    DataLogFileHandler& log = connection.Log();
    log.LogMessage(LOG_FN, "QLIB_StartLogFilePlaybackMode(%s, %d)", sFileName, bKeepLastTwo);
    std::FILE* pFile = OpenReadable(sFileName);
    if (pFile == nullptr) {
        log.LogMessage(LOG_RET, "QLIB_StartLogFilePlaybackMode() - Could not open file.");
        return false;
    }
    StopLogFilePlaybackMode();
    const size_t iLeftOut = bKeepLastTwo != 0 ? 0 : kFcsSize;
    std::string line;
    QueueItem packet;
    // The file may be the log being written, to which every replayed packet adds a line: stop at its present
    // end.
    const long iEnd = SizeOf(pFile);
    while ((iEnd < 0 || std::ftell(pFile) < iEnd) && ReadLine(pFile, line))
        if (ParseHex(HexTextOf(line), packet) && packet.length > iLeftOut)
            connection.ReplayPacket({packet.data, packet.length - iLeftOut});
    std::fclose(pFile);
    connection.SetPlaybackMode(true);
    return true;
}

bool LogPlayback::StopLogFilePlaybackMode() {
    const ConnectionAccess connection(m_connection);
    connection.Log().LogMessage(LOG_FN, "QLIB_StopLogFilePlaybackMode()");
    connection.CommandResponseQueue().Clear();
    connection.PhoneLogQueue().Clear();
    connection.SetPlaybackMode(false);
    return true;
}
