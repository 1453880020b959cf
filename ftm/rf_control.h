// The radio's state for factory tests.
#pragma once

#include "diag/ftm_types.h"
#include "platform/export.h"

class CommandFrame;

/// The radio technology and band of FTM_SET_MODE, by the phone's numbers.
enum FTM_RF_Mode_Enum : int {};

/// RfControl sets up the radio. Every command is one request and its response, within
/// QMSL_TimeOut_SyncRequest. True means that the phone answered in the current command type and system mode.
/// Meanings and units of the values (PDM, gain, power) are phone-specific. Caller's thread. The frame must
/// outlive it.
class QUILLET_API RfControl {
public:
    explicit RfControl(CommandFrame& frame) : m_frame(frame) {}

    /// AutoDetectCommandType finds the form of factory-test requests that the phone accepts. It sets PDM 1 to
    /// 0 with type 75 and mode 0, then type 75 and mode 1, then type 59. Returns the first accepted type, or
    /// FTM_COMMAND_UNKNOWN after up to three time-outs. Type and mode of the last try stay set.
    FTM_Command_Type AutoDetectCommandType();

    /// FTM_SET_MODE selects technology and band, and with them the system mode of this and later requests: RF
    /// modes 3, 5, 6, 8, 14, 17, 26, 27 need mode 0 (or 3, when that is set), 9, 15, 16, 22, 23, 25, 28, 29
    /// mode 1, 10, 11, 12, 18 mode 2, 30 mode 19. False for any other RF mode, which is recorded but not
    /// sent. After 10, 11, 12 and 18 it waits another 100 ms for the radio to settle.
    bool FTM_SET_MODE(FTM_RF_Mode_Enum eNewMode);
    /// GetRfMode: the last argument of FTM_SET_MODE; initially 0.
    FTM_RF_Mode_Enum GetRfMode() const { return m_eRfMode; }

    /// FTM_SET_PDM sets one of the control voltages (pulse-density modulators).
    bool FTM_SET_PDM(unsigned short iPDMtype, unsigned short iPDMvalue);
    /// FTM_SET_CHAN tunes the radio to a channel of the band.
    bool FTM_SET_CHAN(unsigned short iChannel);
    /// FTM_SET_TX_ON, FTM_SET_TX_OFF switch the transmitter on and off.
    bool FTM_SET_TX_ON();
    bool FTM_SET_TX_OFF();
    /// FTM_CDMA_CW_WAVEFORM: true for an unmodulated carrier.
    bool FTM_CDMA_CW_WAVEFORM(bool bSelectCW);
    /// FTM_SET_PA_RANGE sets the gain range of the power amplifier, FTM_SET_LNA_RANGE that of the low-noise
    /// amplifier.
    bool FTM_SET_PA_RANGE(unsigned short iPArange);
    bool FTM_SET_LNA_RANGE(unsigned char iLNArange);
    /// FTM_SET_RF_POWER_MODE sets the radio's power mode.
    bool FTM_SET_RF_POWER_MODE(unsigned char iMode);

    /// FTM_GET_SYNTH_STATE: bLockState is not 0 when the synthesizers are locked.
    bool FTM_GET_SYNTH_STATE(unsigned char& bLockState);
    /// FTM_GET_ADC_VAL reads an analogue input.
    bool FTM_GET_ADC_VAL(unsigned short iADC_type, unsigned short& iADC_value);

    /// FTM_SET_SECONDARY_CHAIN sets the mode of the second receive chain.
    bool FTM_SET_SECONDARY_CHAIN(unsigned short iMode);
    /// FTM_SECOND_CHAIN_TEST_CALL sets the mode of the second receive chain in a test call.
    bool FTM_SECOND_CHAIN_TEST_CALL(unsigned char iMode);
    /// FTM_SET_WCDMA_SECONDARY_CHAIN sets system mode 21. True when the phone's status is 0. Switching the
    /// chain on successfully sets the mode to 1 afterwards; otherwise it stays 21.
    bool FTM_SET_WCDMA_SECONDARY_CHAIN(bool bEnableSecondaryChain);

private:
    CommandFrame& m_frame;
    FTM_RF_Mode_Enum m_eRfMode{};
};
