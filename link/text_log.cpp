#include "link/text_log.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <ctime>
#include <iterator>
#include <mutex>
#include <string>

#include "link/as_int.h"
#include "link/clock.h"

namespace {

constexpr int kMaxHexBytes = 3967;
constexpr size_t kHexDigits = 3; // of one byte, with its blank
constexpr size_t kMaxHexText = kMaxHexBytes * kHexDigits;
constexpr size_t kMaxFileName = 202;

constexpr const char* kCategoryNames[] = {
    "LOG_IO",       "LOG_FN",       "LOG_RET",       "LOG_ASYNC",     "LOG_ERR",
    "LOG_IO_AHDLC", "LOG_FN_AHDLC", "LOG_RET_AHDLC", "LOG_INF_AHDLC", "LOG_ERR_AHDLC",
    "LOG_IO_DEV",   "LOG_FN_DEV",   "LOG_RET_DEV",   "LOG_INF_DEV",   "LOG_ERR_DEV",
};

const char* CategoryName(int iCategory) {
    if (iCategory <= 0)
        return kCategoryNames[0];
    const auto iBit = static_cast<size_t>(std::countr_zero(static_cast<unsigned>(iCategory)));
    return iBit < std::size(kCategoryNames) ? kCategoryNames[iBit] : "INVALID LOG LEVEL";
}

/// Messages of the framing layer are indented by two spaces, those of the port by four.
size_t IndentOf(unsigned int iCategory) {
    if (!std::has_single_bit(iCategory))
        return 0;
    if (iCategory >= LOG_IO_AHDLC && iCategory <= LOG_ERR_AHDLC)
        return 2;
    return iCategory >= LOG_IO_DEV && iCategory <= LOG_ERR_DEV ? 4 : 0;
}

/// "00 " to "FF ", each with a terminating zero.
using HexText = std::array<char, kHexDigits + 1>;
constexpr std::array<HexText, 256> kHexTexts = [] {
    constexpr char sDigits[] = "0123456789ABCDEF";
    std::array<HexText, 256> texts{};
    for (size_t i = 0; i < texts.size(); ++i)
        texts[i] = {sDigits[i >> 4], sDigits[i & 0x0F], ' ', '\0'};
    return texts;
}();

/// DateAndTime returns the local time. std::localtime uses one record for the whole process, hence the lock.
std::string DateAndTime() {
    static std::mutex recordLock;
    const std::lock_guard lock(recordLock);
    const std::time_t now = std::time(nullptr);
    char sText[32];
    const std::tm* const pLocal = std::localtime(&now);
    const size_t iLength =
        pLocal == nullptr ? 0 : std::strftime(sText, sizeof sText, "%m/%d/%y, %H:%M:%S", pLocal);
    return iLength == 0 ? ", " : std::string(sText, iLength);
}

} // namespace

DataLogFileHandler::DataLogFileHandler(const char* sLogFileName)
    : m_sLogFileName(sLogFileName == nullptr ? "" : sLogFileName), m_iStartTime_ms(TickCount_ms()) {}

DataLogFileHandler::~DataLogFileHandler() {
    CloseLog();
}

void DataLogFileHandler::LogMessage(unsigned int iCategory, const char* sFormat, ...) {
    if (!Wants(iCategory))
        return;
    const std::lock_guard lock(m_lock);
    va_list arguments;
    va_start(arguments, sFormat);
    BeginText(iCategory, sFormat, arguments);
    va_end(arguments);
    WriteMessage(iCategory);
}

void DataLogFileHandler::LogHex(unsigned int iCategory, const unsigned char* pData, int iLength,
                                const char* sFormat, ...) {
    if (!Wants(iCategory))
        return;
    const std::lock_guard lock(m_lock);
    va_list arguments;
    va_start(arguments, sFormat);
    const size_t iUsed = BeginText(iCategory, sFormat, arguments);
    va_end(arguments);
    if (iUsed + kMaxHexText < sizeof m_sText)
        FormatHexBytes(m_sText + iUsed, pData, iLength);
    WriteMessage(iCategory);
}

size_t DataLogFileHandler::BeginText(unsigned int iCategory, const char* sFormat, va_list arguments) {
    const size_t iIndent = IndentOf(iCategory);
    std::memset(m_sText, ' ', iIndent);
    const int iWanted = std::vsnprintf(m_sText + iIndent, sizeof m_sText - iIndent, sFormat, arguments);
    if (iWanted < 0) {
        m_sText[iIndent] = '\0';
        return iIndent;
    }
    return std::min(iIndent + static_cast<size_t>(iWanted), sizeof m_sText - 1);
}

void DataLogFileHandler::WriteMessage(unsigned int iCategory) {
    const DWORD iElapsed_ms = Elapsed_ms();
    WriteLine(m_sText, static_cast<int>(iCategory));
    if (m_pfnTextLogCallBack == nullptr)
        return;
    // A copy, because the callback may log and so overwrite the text.
    TextLogRecord record{};
    record.iCategory = static_cast<unsigned short>(iCategory);
    record.iElapsed_ms = iElapsed_ms;
    const size_t iCopied = std::min(std::strlen(m_sText), sizeof record.sText - 1);
    std::memcpy(record.sText, m_sText, iCopied);
    m_pfnTextLogCallBack(sizeof record, reinterpret_cast<unsigned char*>(&record), m_pTextLogUserData);
}

void DataLogFileHandler::WriteLine(const char* sText, int iCategory) {
    const std::lock_guard lock(m_lock);
    if (!m_bLoggingEnabled || !OpenFile())
        return;
    std::fprintf(m_hLogFile, "%d\t,%s,%s\n", AsInt(Elapsed_ms()), CategoryName(iCategory), sText);
    std::fflush(m_hLogFile);
}

bool DataLogFileHandler::OpenFile() {
    if (m_hLogFile == nullptr && !m_sLogFileName.empty())
        m_hLogFile = std::fopen(m_sLogFileName.c_str(), "w");
    return m_hLogFile != nullptr;
}

DWORD DataLogFileHandler::Elapsed_ms() const {
    return TickCount_ms() - m_iStartTime_ms;
}

void DataLogFileHandler::EndFile() {
    if (m_hLogFile != nullptr) {
        WriteLine("Stop Log", LOG_IO);
        std::fclose(m_hLogFile);
        m_hLogFile = nullptr;
    }
    m_iStartTime_ms = TickCount_ms();
}

bool DataLogFileHandler::RestartLog() {
    const std::lock_guard lock(m_lock);
    EndFile();
    WriteLine("Start Log", LOG_IO);
    if (m_hLogFile == nullptr)
        return true;
    LogMessage(LOG_FN, "%s", DateAndTime().c_str());
    return true;
}

void DataLogFileHandler::CloseLog() {
    const std::lock_guard lock(m_lock);
    EndFile();
}

bool DataLogFileHandler::Start(const char* sFileName, unsigned int iLogFlags) {
    const std::lock_guard lock(m_lock);
    m_sLogFileName.assign(sFileName, std::min(std::strlen(sFileName), kMaxFileName));
    m_iLogFlags = iLogFlags;
    m_bLoggingEnabled = true;
    return RestartLog();
}

void DataLogFileHandler::Stop() {
    const std::lock_guard lock(m_lock);
    m_sLogFileName.clear();
    EndFile();
}

void DataLogFileHandler::SetCallBack(void* pUserData, TextLogCallBack pfnCallBack) {
    const std::lock_guard lock(m_lock);
    m_pTextLogUserData = pUserData;
    m_pfnTextLogCallBack = pfnCallBack;
}

void DataLogFileHandler::FormatHexBytes(char* sOut, const unsigned char* pData, int iLength) {
    *sOut = '\0';
    for (int i = 0; i < std::min(iLength, kMaxHexBytes); ++i, sOut += kHexDigits)
        std::memcpy(sOut, kHexTexts[pData[i]].data(), sizeof(HexText));
}
