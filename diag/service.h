// Service operations: error log, operating mode, service code, DIP switches, key injection.
#pragma once

#include "diag/key_press_id.h"
#include "platform/export.h"

class CommandFrame;

/// The operating mode that DIAG_CONTROL_F asks for: passed to the phone unchanged, every value is allowed.
enum mode_enum_type : int {};

/// What the phone's error log answers behind its command code; the phone's software defines what is in it.
struct QLIB_DIAG_Err_Read {
    unsigned char aData[264];
};
static_assert(sizeof(QLIB_DIAG_Err_Read) == 264);

/// PhoneService: each operation is one request and its answer, within QMSL_TimeOut_SyncRequest; true means
/// that the phone answered. Values that an answer is too short for stay as they were, as do all without an
/// answer; what reads values is false for an answer that ends within its header. Caller's thread. The frame
/// must outlive it.
class QUILLET_API PhoneService {
public:
    explicit PhoneService(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_ERR_READ_F reads the error log.
    bool DIAG_ERR_READ_F(QLIB_DIAG_Err_Read& errorLog);
    /// DIAG_ERR_CLEAR_F clears a record of it.
    bool DIAG_ERR_CLEAR_F(unsigned char iRecord);

    /// DIAG_CONTROL_F asks for an operating mode (16 bits are sent).
    bool DIAG_CONTROL_F(mode_enum_type eMode);
    /// DIAG_DLOAD_F sends the phone into its download mode: diagnostic requests are not answered afterwards.
    bool DIAG_DLOAD_F();
    /// DIAG_SECURITY_FREEZE_F freezes the phone's security settings.
    bool DIAG_SECURITY_FREEZE_F();

    /// DIAG_SPC_F presents the service programming code, six characters without a zero. The phone's verdict
    /// comes out in iResult.
    bool DIAG_SPC_F(const unsigned char* const iSPC, unsigned char& iResult);

    /// DIAG_GET_DIPSW_F reads the DIP switches. The value on entry is sent along, and a phone may take it
    /// for the switches to set: both requests look alike on the wire.
    bool DIAG_GET_DIPSW_F(unsigned short& iSwitchValues);
    /// DIAG_SET_DIPSW_F sends switches. Whether the phone took them does not show.
    bool DIAG_SET_DIPSW_F(unsigned short iSwitchValues);

    /// DIAG_HS_KEY_F presses a key as if a finger did; iHold 1 keeps it down.
    bool DIAG_HS_KEY_F(KeyPressID iKey, unsigned char iHold);

private:
    bool SendSwitches(unsigned short iSwitchValues);

    CommandFrame& m_frame;
};
