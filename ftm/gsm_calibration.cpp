// Calibration of the GSM transmit path. The response to each command must have the system mode.
#include "ftm/gsm_rf.h"

#include "ftm/gsm_rf_command.h"
#include "link/log_codes.h"

bool GsmRf::FTM_DO_GSM_AUTOCAL(short iPower, unsigned short iPA_DAC_Value, LONG iMax_Power, LONG iMin_Power,
                               unsigned char iWriteNVFlag, unsigned short iRSB_Cor_A_R0,
                               unsigned short iRSB_Cor_A_R1, unsigned short iRSB_Cor_B_R0,
                               unsigned short iRSB_Cor_B_R1) {
    LogLine(
        m_frame, LOG_FN,
        "QLIB_FTM_DO_GSM_AUTOCAL(iPower=%d, iPA_DAC_Value=%d, iMax_Power=%d, iMin_Power=%d, iWriteNVFlag=%d, "
        "iRSB_Cor_A_R0=%d, iRSB_Cor_A_R1=%d, iRSB_Cor_B_R0=%d, iRSB_Cor_B_R1=%d)",
        iPower, iPA_DAC_Value, iMax_Power, iMin_Power, iWriteNVFlag, iRSB_Cor_A_R0, iRSB_Cor_A_R1,
        iRSB_Cor_B_R0, iRSB_Cor_B_R1);
    if (!m_ftmLog.FTM_LOG_StartFTM_Log(kGsmCalibrationLogType)) {
        LogLine(m_frame, LOG_RET, "QLIB_FTM_DO_GSM_AUTOCAL() -- Error: failed to start FTM log");
        return false;
    }
    AppendFields(BeginGsmRf(m_frame, 236), iPower, iPA_DAC_Value, iMax_Power, iMin_Power, iWriteNVFlag,
                 iRSB_Cor_A_R0, iRSB_Cor_A_R1, iRSB_Cor_B_R0, iRSB_Cor_B_R1);
    return m_frame.SendFtmCmd();
}

bool GsmRf::FTM_SET_PATH_DELAY(short* piDelay) {
    LONG iDelay = *piDelay;
    if (!CalibrateGsmRf(m_frame, 237, "QLIB_FTM_SET_PATH_DELAY-start( *ipDelay=%d)", iDelay))
        return false;
    const bool bTaken = TakeValues(m_frame, iDelay);
    *piDelay = static_cast<short>(iDelay);
    LogLine(m_frame, LOG_RET, "QLIB_FTM_SET_PATH_DELAY-finish( *piDelay=%d)", *piDelay);
    return bTaken;
}

bool GsmRf::FTM_ENABLE_POLAR_REF_CAL(unsigned char iEnable) {
    const unsigned short iEnabled = iEnable;
    return CalibrateGsmRf(m_frame, 242, "QLIB_FTM_ENABLE_POLAR_REF_CAL(iEnable=%d)", iEnabled);
}

bool GsmRf::FTM_SET_TWOTONE_FREQ_OFFSET(unsigned short iFreqOffsetSecTone) {
    return CalibrateGsmRf(m_frame, 242, "QLIB_FTM_SET_TWOTONE_FREQ_OFFSET(iFreqOffsetSecTone=%d)",
                          iFreqOffsetSecTone);
}

bool GsmRf::FTM_DO_CALPATH_RSB(unsigned char iRSB_Subcmd_ID, unsigned char iDone_RSG, unsigned short* piRSB_A,
                               unsigned short* piRSB_B) {
    return CalibrateGsmRf(m_frame, 243,
                          "QLIB_FTM_DO_CALPATH_RSB(iRSB_Subcmd_ID=%d, iDone_RSG=%d, iRSB_A=%d, iRSB_B=%d)",
                          iRSB_Subcmd_ID, iDone_RSG, *piRSB_A, *piRSB_B) &&
           TakeLogged(m_frame, "QLIB_FTM_DO_CALPATH_RSB( iRSB_A = %d, iRSB_B = %d)", *piRSB_A, *piRSB_B);
}

bool GsmRf::FTM_SET_OPLL_BW(unsigned char iBandwidth_Num) {
    return CalibrateGsmRf(m_frame, 245, "QLIB_FTM_SET_OPLL_BW(iBandwidth_Num=%d)", iBandwidth_Num);
}

bool GsmRf::FTM_BASEBAND_BW_CAL(unsigned char iBandwidth_Num) {
    return CalibrateGsmRf(m_frame, 250, "QLIB_FTM_BASEBAND_BW_CAL(iBandwidth_Num=%d)", iBandwidth_Num);
}

bool GsmRf::FTM_GSM_POLAR_TX_SWEEP_CAL(DWORD iNumDac, const DWORD* piFirstList, const DWORD* piSecondList) {
    constexpr size_t kModeOffset = 2;
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GSM_POLAR_TX_SWEEP_CAL(iNumDac=%d)", iNumDac);
    RequestBuilder& request = BeginFtm(m_frame, 300).U16(4 * iNumDac).U16(10);
    for (DWORD i = 0; i < iNumDac && request.Complete(); ++i)
        request.U16(piFirstList[i]).U16(piSecondList[i]);
    if (!request.Complete())
        return false;
    if (m_frame.GetCommandType() == FTM_COMMAND_59)
        return m_frame.SendFtmCmd59();
    unsigned char iMode = 0;
    return m_frame.Send(0) && m_frame.Response().U8At(kModeOffset, iMode) &&
           iMode == static_cast<int>(m_frame.GetSystemMode());
}
