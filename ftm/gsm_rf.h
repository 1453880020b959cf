// The GSM radio in factory tests: settings, and calibration of the transmit path.
#pragma once

#include "ftm/ftm_log.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class RequestBuilder;
class FtmLog;

/// GsmRf calibrates GSM transmit and receive. Every command is one request and its response, within
/// QMSL_TimeOut_SyncRequest. The first group accepts any response of the command type, the calibrations only
/// one in the current system mode. Slots count from 0; units are phone-specific. Caller's thread. The frame
/// and the FTM log must outlive it.
class QUILLET_API GsmRf {
public:
    /// Values in each table of a PA profile.
    static constexpr size_t kPaProfileSize = 64;

    GsmRf(CommandFrame& frame, FtmLog& ftmLog) : m_frame(frame), m_ftmLog(ftmLog) {}

    // --- Bursts, slots, power -----------------------------------------------------------------------

    /// FTM_SET_PA_PROFILE sends two tables of kPaProfileSize values each. The phone uses the first iRampSize
    /// and iPaLookupTableSize of them.
    bool FTM_SET_PA_PROFILE(const unsigned short* piRampTable, const unsigned short* piPaLookupTable,
                            unsigned char iRampSize, unsigned char iPaLookupTableSize);
    /// FTM_SET_TRANSMIT_CONT, FTM_SET_TRANSMIT_BURST transmit in a slot, continuously or in bursts:
    /// iNumBursts of them, unless bIsInfiniteDuration.
    bool FTM_SET_TRANSMIT_CONT(unsigned char iSlotNum, short iDataSource, unsigned char iTSCindex,
                               DWORD iNumBursts, bool bIsInfiniteDuration);
    bool FTM_SET_TRANSMIT_BURST(unsigned char iSlotNum, short iDataSource, unsigned char iTSCindex,
                                DWORD iNumBursts, bool bIsInfiniteDuration);
    /// FTM_SET_RX_BURST, FTM_SET_RX_CONTINUOUS receive in a slot, in bursts or continuously.
    bool FTM_SET_RX_BURST(unsigned char iSlotNum, short iRxFunction);
    bool FTM_SET_RX_CONTINUOUS(unsigned char iSlotNum, short iRxFunction);
    /// FTM_SET_TX_POWER_LEVEL sets the power level of later bursts.
    bool FTM_SET_TX_POWER_LEVEL(unsigned char iPowerLevelID);
    /// FTM_SET_PA_DAC_INPUT sets the input of the power amplifier's converter directly.
    bool FTM_SET_PA_DAC_INPUT(unsigned short iDACinput);
    /// FTM_SET_TX_CAL_SWEEP steps that input from one value to another.
    bool FTM_SET_TX_CAL_SWEEP(unsigned short iDAC_Start, unsigned short iDAC_Stop, unsigned short iDAC_Step);
    /// FTM_SET_TX_FRAME_MATRIX sets what one slot of the frame transmits: whether it does, its power and its
    /// modulation.
    bool FTM_SET_TX_FRAME_MATRIX(unsigned char iSlotNum, unsigned char iTurnSlotOn, unsigned short iPwrLevel,
                                 unsigned char iModScheme);
    /// FTM_GET_RSSI reads the signal strength.
    bool FTM_GET_RSSI(DWORD& iRssiValue);

    // --- Calibration --------------------------------------------------------------------------------

    /// FTM_DO_GSM_AUTOCAL starts the phone's own calibration, whose results arrive as FTM log 10. It starts
    /// that log first; when this fails, the calibration is not started.
    bool FTM_DO_GSM_AUTOCAL(short iPower, unsigned short iPA_DAC_Value, LONG iMax_Power, LONG iMin_Power,
                            unsigned char iWriteNVFlag, unsigned short iRSB_Cor_A_R0,
                            unsigned short iRSB_Cor_A_R1, unsigned short iRSB_Cor_B_R0,
                            unsigned short iRSB_Cor_B_R1);
    /// FTM_SET_PATH_DELAY sends *piDelay and replaces it with the phone's value.
    bool FTM_SET_PATH_DELAY(short* piDelay);
    /// FTM_ENABLE_POLAR_REF_CAL and FTM_SET_TWOTONE_FREQ_OFFSET are the same command to the phone.
    bool FTM_ENABLE_POLAR_REF_CAL(unsigned char iEnable);
    bool FTM_SET_TWOTONE_FREQ_OFFSET(unsigned short iFreqOffsetSecTone);
    /// FTM_DO_CALPATH_RSB sends both residual-sideband corrections and replaces them with the phone's.
    bool FTM_DO_CALPATH_RSB(unsigned char iRSB_Subcmd_ID, unsigned char iDone_RSG, unsigned short* piRSB_A,
                            unsigned short* piRSB_B);
    /// FTM_SET_OPLL_BW sets the bandwidth of the offset phase-locked loop.
    bool FTM_SET_OPLL_BW(unsigned char iBandwidth_Num);
    /// FTM_BASEBAND_BW_CAL calibrates the bandwidth of the baseband filters.
    bool FTM_BASEBAND_BW_CAL(unsigned char iBandwidth_Num);
    /// FTM_GSM_POLAR_TX_SWEEP_CAL sweeps over iNumDac pairs of 16-bit values (the low halves of both lists'
    /// entries). False, with nothing sent, when the pairs do not fit in a request (more than about 1020).
    bool FTM_GSM_POLAR_TX_SWEEP_CAL(DWORD iNumDac, const DWORD* piFirstList, const DWORD* piSecondList);

private:
    CommandFrame& m_frame;
    FtmLog& m_ftmLog;
};
