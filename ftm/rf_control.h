// The radio's state for factory tests: mode, channel, transmitter, gain stages, second chain.
#pragma once

#include "diag/ftm_types.h"
#include "platform/export.h"

class CommandFrame;

/// The radio technology and band of FTM_SET_MODE, by the handset's numbers.
enum FTM_RF_Mode_Enum : int {};

/// RfControl puts the radio into a state. Every command is one request and its answer, within
/// QMSL_TimeOut_SyncRequest; true means that the handset answered it in the current command type and system
/// mode. Meanings and units of the values (PDM, gain, power) are the handset's. Caller's thread. The frame
/// must outlive it.
class QUILLET_API RfControl {
public:
    explicit RfControl(CommandFrame& frame) : m_frame(frame) {}

    /// AutoDetectCommandType finds out how the handset wants its factory-test requests, by setting PDM 1 to
    /// 0: type 75 with mode 0, then with mode 1, then type 59. Returns the type that was answered, or
    /// FTM_COMMAND_UNKNOWN after up to three time-outs. Type and mode of the last try stay.
    FTM_Command_Type AutoDetectCommandType();

    /// FTM_SET_MODE selects technology and band, and with them the system mode of this and later requests:
    /// RF modes 3, 5, 6, 8, 14, 17, 26, 27 need mode 0 (or 3, when that is set), 9, 15, 16, 22, 23, 25, 28,
    /// 29 mode 1, 10, 11, 12, 18 mode 2, 30 mode 19. Any other RF mode is remembered but not sent: false.
    /// After 10, 11, 12 and 18 it waits 100 ms more, in which the radio settles.
    bool FTM_SET_MODE(FTM_RF_Mode_Enum eNewMode);
    /// GetRfMode: what FTM_SET_MODE was last called with; 0 before.
    FTM_RF_Mode_Enum GetRfMode() const { return m_eRfMode; }

    bool FTM_SET_PDM(unsigned short iPDMtype, unsigned short iPDMvalue);
    bool FTM_SET_CHAN(unsigned short iChannel);
    bool FTM_SET_TX_ON();
    bool FTM_SET_TX_OFF();
    /// FTM_CDMA_CW_WAVEFORM: true for an unmodulated carrier.
    bool FTM_CDMA_CW_WAVEFORM(bool bSelectCW);
    bool FTM_SET_PA_RANGE(unsigned short iPArange);
    bool FTM_SET_LNA_RANGE(unsigned char iLNArange);
    bool FTM_SET_RF_POWER_MODE(unsigned char iMode);

    /// FTM_GET_SYNTH_STATE: bLockState is not 0 when the synthesizers are locked.
    bool FTM_GET_SYNTH_STATE(unsigned char& bLockState);
    bool FTM_GET_ADC_VAL(unsigned short iADC_type, unsigned short& iADC_value);

    bool FTM_SET_SECONDARY_CHAIN(unsigned short iMode);
    bool FTM_SECOND_CHAIN_TEST_CALL(unsigned char iMode);
    /// FTM_SET_WCDMA_SECONDARY_CHAIN works in system mode 21, which it sets. True when the handset's status
    /// is 0; then, if it switched the chain on, the mode is 1 afterwards. Otherwise it stays 21.
    bool FTM_SET_WCDMA_SECONDARY_CHAIN(bool bEnableSecondaryChain);

private:
    CommandFrame& m_frame;
    FTM_RF_Mode_Enum m_eRfMode{};
};
