#include "ftm/rf_control.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <thread>

#include "ftm/ftm_command.h"

namespace {

constexpr FTM_Mode_Id_Enum kFactoryVariant{3};
constexpr FTM_Mode_Id_Enum kSlowMode{2};
constexpr std::chrono::milliseconds kSettling(100);

/// The system mode of each supported RF mode.
struct ServedRfMode {
    int iRfMode;
    FTM_Mode_Id_Enum eSystemMode;
};
constexpr ServedRfMode kServedRfModes[] = {
    {3, FTM_MODE_ID_FACTORY},  {5, FTM_MODE_ID_FACTORY},  {6, FTM_MODE_ID_FACTORY},
    {8, FTM_MODE_ID_FACTORY},  {14, FTM_MODE_ID_FACTORY}, {17, FTM_MODE_ID_FACTORY},
    {26, FTM_MODE_ID_FACTORY}, {27, FTM_MODE_ID_FACTORY}, {9, FTM_MODE_ID_CDMA_1X},
    {15, FTM_MODE_ID_CDMA_1X}, {16, FTM_MODE_ID_CDMA_1X}, {22, FTM_MODE_ID_CDMA_1X},
    {23, FTM_MODE_ID_CDMA_1X}, {25, FTM_MODE_ID_CDMA_1X}, {28, FTM_MODE_ID_CDMA_1X},
    {29, FTM_MODE_ID_CDMA_1X}, {10, kSlowMode},           {11, kSlowMode},
    {12, kSlowMode},           {18, kSlowMode},           {30, FTM_Mode_Id_Enum{19}}};

std::optional<FTM_Mode_Id_Enum> SystemModeOf(FTM_RF_Mode_Enum eRfMode, FTM_Mode_Id_Enum eCurrent) {
    const auto* pServed = std::find_if(
        std::begin(kServedRfModes), std::end(kServedRfModes),
        [eRfMode](const ServedRfMode& served) { return served.iRfMode == static_cast<int>(eRfMode); });
    if (pServed == std::end(kServedRfModes))
        return std::nullopt;
    const bool bStays = pServed->eSystemMode == FTM_MODE_ID_FACTORY && eCurrent == kFactoryVariant;
    return bStays ? eCurrent : pServed->eSystemMode;
}

} // namespace

FTM_Command_Type RfControl::AutoDetectCommandType() {
    constexpr struct {
        FTM_Command_Type eCommandType;
        FTM_Mode_Id_Enum eSystemMode;
    } kTries[] = {{FTM_COMMAND_75, FTM_MODE_ID_FACTORY},
                  {FTM_COMMAND_75, FTM_MODE_ID_CDMA_1X},
                  {FTM_COMMAND_59, FTM_MODE_ID_CDMA_1X}};
    for (const auto& attempt : kTries) {
        m_frame.SetCommandType(attempt.eCommandType);
        m_frame.StoreSystemMode(attempt.eSystemMode);
        if (FTM_SET_PDM(1, 0))
            return attempt.eCommandType;
    }
    return FTM_COMMAND_UNKNOWN;
}

bool RfControl::FTM_SET_MODE(FTM_RF_Mode_Enum eNewMode) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_SET_MODE(eNewMode=%d)", static_cast<int>(eNewMode));
    m_frame.BeginRequest();
    m_eRfMode = eNewMode;
    const auto systemMode = SystemModeOf(eNewMode, m_frame.GetSystemMode());
    if (!systemMode)
        return false;
    m_frame.StoreSystemMode(*systemMode);
    BeginFtm(m_frame, 7).S16(eNewMode);
    const bool bAnswered = m_frame.SendFtmCmd();
    if (*systemMode == kSlowMode)
        std::this_thread::sleep_for(kSettling);
    return bAnswered;
}

bool RfControl::FTM_SET_PDM(unsigned short iPDMtype, unsigned short iPDMvalue) {
    return SendFtm(m_frame, 0, "QLIB_FTM_SET_PDM(iPDMtype=%d, iPDMvalue=%d)", iPDMtype, iPDMvalue);
}

bool RfControl::FTM_SET_CHAN(unsigned short iChannel) {
    return SendFtm(m_frame, 8, "QLIB_FTM_SET_CHAN(iChannel=%d)", iChannel);
}

bool RfControl::FTM_SET_TX_ON() {
    return SendFtm(m_frame, 2, "QLIB_FTM_SET_TX_ON()");
}

bool RfControl::FTM_SET_TX_OFF() {
    return SendFtm(m_frame, 3, "QLIB_FTM_SET_TX_OFF()");
}

bool RfControl::FTM_CDMA_CW_WAVEFORM(bool bSelectCW) {
    return SendFtm(m_frame, 50, "QLIB_FTM_CDMA_CW_WAVEFORM(bSelectCW=%d)", bSelectCW);
}

bool RfControl::FTM_SET_PA_RANGE(unsigned short iPArange) {
    return SendFtm(m_frame, 54, "QLIB_FTM_SET_PA_RANGE(iPArange=%d)", iPArange);
}

bool RfControl::FTM_SET_LNA_RANGE(unsigned char iLNArange) {
    const unsigned short iRange = iLNArange;
    return SendFtm(m_frame, 58, "QLIB_FTM_SET_LNA_RANGE(iLNArange=%d)", iRange);
}

bool RfControl::FTM_SET_RF_POWER_MODE(unsigned char iMode) {
    return SendFtm(m_frame, 128, "QLIB_FTM_SET_RF_POWER_MODE(iMode=%d)", iMode);
}

bool RfControl::FTM_GET_SYNTH_STATE(unsigned char& bLockState) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GET_SYNTH_STATE( )");
    BeginFtm(m_frame, 16).U8(bLockState);
    return m_frame.SendFtmCmd() &&
           TakeLogged(m_frame, "QLIB_FTM_GET_SYNTH_STATE( bLockState = %d)", bLockState);
}

bool RfControl::FTM_GET_ADC_VAL(unsigned short iADC_type, unsigned short& iADC_value) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GET_ADC_VAL( iADC_type = %d)", iADC_type);
    BeginFtm(m_frame, 59).U16(iADC_type).U16(iADC_value);
    return m_frame.SendFtmCmd() &&
           TakeLogged(m_frame, "QLIB_FTM_GET_ADC_VAL( iADC_type = %d, iADC_value = %d)",
                      std::tuple(iADC_type), iADC_value);
}

bool RfControl::FTM_SET_SECONDARY_CHAIN(unsigned short iMode) {
    return SendFtm(m_frame, 121, "QLIB_FTM_SET_SECONDARY_CHAIN(iMode=%d)", iMode);
}

bool RfControl::FTM_SECOND_CHAIN_TEST_CALL(unsigned char iMode) {
    return SendFtm(m_frame, 123, "QLIB_FTM_SECOND_CHAIN_TEST_CALL(iMode=%d)", iMode);
}

bool RfControl::FTM_SET_WCDMA_SECONDARY_CHAIN(bool bEnableSecondaryChain) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_SET_WCDMA_SECONDARY_CHAIN( bEnableSecondaryChain = %d)",
            bEnableSecondaryChain);
    m_frame.SetSystemMode(FTM_MODE_ID_WCDMA_SECONDARY);
    m_frame.FormatExtendedFTMHeader(120, 0, 0).U8(bEnableSecondaryChain);
    unsigned short iStatus = 0;
    if (!m_frame.Send(0) || !TakeValues(m_frame, iStatus))
        return false;
    LogLine(m_frame, LOG_RET, "QLIB_FTM_SET_WCDMA_SECONDARY_CHAIN( bEnableSecondaryChain) status = %d",
            iStatus);
    if (iStatus != 0)
        return false;
    if (bEnableSecondaryChain)
        m_frame.SetSystemMode(FTM_MODE_ID_CDMA_1X);
    return true;
}
