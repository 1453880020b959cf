// Service operations, as a repair shop uses them.
#pragma once

#include "diag/key_press_id.h"
#include "platform/export.h"

class CommandFrame;

/// The operating mode for DIAG_CONTROL_F, passed to the phone unchanged; every value is allowed.
enum mode_enum_type : int {};

/// The error log's response after its command code. Its layout is defined by the phone's software.
struct QLIB_DIAG_Err_Read {
    unsigned char aData[264];
};
static_assert(sizeof(QLIB_DIAG_Err_Read) == 264);

/// PhoneService: each operation is one request and its response, within QMSL_TimeOut_SyncRequest; true means
/// that the phone answered. Without a response no value changes; a short one leaves the values that it lacks
/// unchanged. Operations that read values are also false for a response that ends within its header. Caller's
/// thread. The frame must outlive it.
class QUILLET_API PhoneService {
public:
    explicit PhoneService(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_ERR_READ_F reads the error log.
    bool DIAG_ERR_READ_F(QLIB_DIAG_Err_Read& errorLog);
    /// DIAG_ERR_CLEAR_F clears one record of the error log.
    bool DIAG_ERR_CLEAR_F(unsigned char iRecord);

    /// DIAG_CONTROL_F requests an operating mode (16 bits are sent).
    bool DIAG_CONTROL_F(mode_enum_type eMode);
    /// DIAG_DLOAD_F puts the phone into download mode, in which it does not answer diagnostic requests.
    bool DIAG_DLOAD_F();
    /// DIAG_SECURITY_FREEZE_F freezes the phone's security settings.
    bool DIAG_SECURITY_FREEZE_F();

    /// DIAG_SPC_F sends the service programming code, six characters without a terminating zero. iResult is
    /// the phone's result.
    bool DIAG_SPC_F(const unsigned char* const iSPC, unsigned char& iResult);

    /// DIAG_GET_DIPSW_F reads the DIP switches. The value on entry is sent, and a phone may set the switches
    /// to it: the two requests are identical on the wire.
    bool DIAG_GET_DIPSW_F(unsigned short& iSwitchValues);
    /// DIAG_SET_DIPSW_F sets the DIP switches. The phone does not report whether it did.
    bool DIAG_SET_DIPSW_F(unsigned short iSwitchValues);

    /// DIAG_HS_KEY_F simulates a key press; iHold 1 keeps the key down.
    bool DIAG_HS_KEY_F(KeyPressID iKey, unsigned char iHold);

private:
    bool SendSwitches(unsigned short iSwitchValues);

    CommandFrame& m_frame;
};
