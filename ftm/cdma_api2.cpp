#include "ftm/cdma_api2.h"

#include <span>
#include <string>

#include "ftm/ftm_command.h"

namespace {

/// Responses begin with the request's 10 bytes.
constexpr size_t kResults = 10;

/// ReadCount reads the number of results. False unless it is the number that the path has.
bool ReadCount(const ResponseReader& response, size_t iOffset, unsigned char iPath, unsigned char& iCount) {
    if (!response.U8At(iOffset, iCount))
        return false;
    return (iPath == 0 && iCount == 3) || (iPath == 1 && iCount == 1);
}

/// ReadBytes fills `out` from an offset on. False, with `out` unchanged, when the response is too short.
bool ReadBytes(const ResponseReader& response, size_t iOffset, std::span<unsigned char> out) {
    if (response.Size() < iOffset + out.size())
        return false;
    for (unsigned char& iByte : out)
        response.U8At(iOffset++, iByte);
    return true;
}

template <class Value>
void LogValues(CommandFrame& frame, LogCategory eCategory, const char* sName, std::span<const Value> values) {
    std::string sText = sName;
    for (const Value iValue : values)
        sText += " " + std::to_string(iValue);
    LogLine(frame, eCategory, "%s", sText.c_str());
}

} // namespace

RequestBuilder& CdmaApi2::BeginCdmaApi2(unsigned short iCommandId) {
    m_frame.SetSystemMode(FTM_MODE_ID_CDMA_API2);
    return m_frame.FormatExtendedFTMHeader(iCommandId, 0, 0);
}

bool CdmaApi2::ExchangeCdmaApi2() {
    // A response of type 59 has neither subsystem nor mode, so it cannot be matched to its request.
    return m_frame.SendFtmCmd() && m_frame.GetCommandType() != FTM_COMMAND_59;
}

bool CdmaApi2::FTM_CDMA_API2_COMMIT_RF_TO_NV(unsigned short iBandClass) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_CDMA_API2_COMMIT_RF_TO_NV iBandClass=%d", iBandClass);
    BeginCdmaApi2(0).U8(iBandClass);
    return ExchangeCdmaApi2();
}

bool CdmaApi2::ReadGains(unsigned char iPath, unsigned char& iCount, unsigned short* piValues) {
    constexpr size_t kValues = kResults + 1;
    const ResponseReader response = m_frame.Response();
    unsigned char iResults = 0;
    if (!ReadCount(response, kResults, iPath, iResults) || iCount < iResults ||
        response.Size() < kValues + 2U * iResults)
        return false;
    iCount = iResults;
    for (size_t i = 0; i < iCount; ++i)
        response.U16At(kValues + 2 * i, piValues[i]);
    return true;
}

bool CdmaApi2::FTM_CDMA_API2_CALIBRATE_DVGA(unsigned char iPath, unsigned short iInputPower,
                                            unsigned char& iCount, unsigned short* piValues) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_CDMA_API2_CALIBRATE_DVGA iPath=%d, iInputPower=%d", iPath,
            iInputPower);
    BeginCdmaApi2(1).U8(iPath).U16(iInputPower);
    if (!ExchangeCdmaApi2() || !ReadGains(iPath, iCount, piValues))
        return false;
    LogValues<unsigned short>(m_frame, LOG_RET, "DVGA values: ", {piValues, iCount});
    return true;
}

bool CdmaApi2::FTM_CDMA_API2_CALIBRATE_LNA(unsigned char iPath, unsigned short iInputPower,
                                           unsigned char iLNAstep, unsigned char& iCount,
                                           unsigned short* piValues) {
    LogLine(m_frame, LOG_FN,
            "QLIB_FTM_CDMA_API2_CALIBRATE_LNA Path=%d, "
            "\t\t\t\t\t\t\t\t\t\t\t\t\t\tInput Power=%d, LNA step",
            iPath, iInputPower);
    BeginCdmaApi2(2).U8(iPath).U8(iLNAstep).U16(iInputPower);
    if (!ExchangeCdmaApi2() || !ReadGains(iPath, iCount, piValues))
        return false;
    LogValues<unsigned short>(m_frame, LOG_FN, "LNA values: ", {piValues, iCount});
    return true;
}

bool CdmaApi2::FTM_CDMA_API2_CALIBRATE_IM2(unsigned char iPath, unsigned short& iResult,
                                           unsigned char& iCount, unsigned char* piValues) {
    constexpr size_t kCount = kResults + 2;
    LogLine(m_frame, LOG_FN, "QLIB_FTM_CDMA_API2_CALIBRATE_IM2 Path=%d, Path=%d", iPath, iPath);
    BeginCdmaApi2(3).U8(iPath);
    if (!ExchangeCdmaApi2())
        return false;
    const ResponseReader response = m_frame.Response();
    unsigned char iResults = 0;
    if (!response.U16At(kResults, iResult) || !ReadCount(response, kCount, iPath, iResults))
        return false;
    const size_t iSize = 3U * iResults;
    if (iCount < iSize || !ReadBytes(response, kCount + 1, {piValues, iSize}))
        return false;
    iCount = iResults;
    LogValues<unsigned char>(m_frame, LOG_RET, "IM2 values: ", {piValues, iSize});
    return true;
}

bool CdmaApi2::FTM_CDMA_API2_CALIBRATE_INTELLICEIVER(unsigned char iPath, unsigned short& iInputPower,
                                                     unsigned char* piValues) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_CDMA_API2_CALIBRATE_INTELLICEIVER Path=%d, Input Power=%d", iPath,
            iInputPower);
    BeginCdmaApi2(4).U8(iPath).U16(iInputPower);
    unsigned char iSucceeded = 0;
    if (!ExchangeCdmaApi2() || !m_frame.Response().U8At(kResults, iSucceeded) || iSucceeded == 0 ||
        !ReadBytes(m_frame.Response(), kResults + 1, {piValues, kIntelliceiverSize}))
        return false;
    LogValues<unsigned char>(m_frame, LOG_RET, "INTELLICEIVER values: ", {piValues, kIntelliceiverSize});
    return true;
}
