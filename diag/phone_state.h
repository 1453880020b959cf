// The phone's present state, and calls.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// PhoneState: each operation is one request and its response, within QMSL_TimeOut_SyncRequest; true means
/// that the phone answered. Without a response no out-value changes. Caller's thread. The frame must outlive
/// it.
class QUILLET_API PhoneState {
public:
    // Sizes in bytes: DIAG_GSM_STATUS_F's buffers, and DIAG_GSM_CALL_ORIG_F's number.
    static constexpr size_t kImeiSize = 5;    // identity of the phone
    static constexpr size_t kImsiSize = 9;    // identity of the subscriber
    static constexpr size_t kLaiSize = 9;     // location area
    static constexpr size_t kDigitCount = 32; // the digits of a number

    explicit PhoneState(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_STATUS_F reads the call manager's status byte. False also for a response without it.
    bool DIAG_STATUS_F(unsigned char& iStatus);

    /// DIAG_HS_DISPLAY_GET_PARAMS_CMD reads the size of the main display in pixels, its bits per pixel and
    /// its orientation. iDisplayID is only logged. The values are taken from the response's end; one that is
    /// too short for all four (10 bytes) changes none, and one that ends within its header (4 bytes) makes
    /// the result false.
    bool DIAG_HS_DISPLAY_GET_PARAMS_CMD(unsigned char iDisplayID, unsigned short& iDisplayHeight,
                                        unsigned short& iDisplayWidth, unsigned char& iPixelDepth,
                                        unsigned char& iPanelOrientation);

    /// DIAG_GSM_STATUS_F reads identities, cell and states from the response's end. False also when it is too
    /// short for all seven (32 bytes); none of them changes then.
    bool DIAG_GSM_STATUS_F(unsigned char* const iIMEI, unsigned char* const iIMSI, unsigned char* const iLAI,
                           unsigned short& iCellID, unsigned char& iCM_CallState,
                           unsigned char& iCM_OperationalMode, unsigned char& iCM_SystemMode);

    /// DIAG_GSM_CALL_ORIG_F calls a number: the first iNumDigits of iDigits. All kDigitCount bytes are read
    /// and sent.
    bool DIAG_GSM_CALL_ORIG_F(unsigned char iNumDigits, const unsigned char* const iDigits);
    /// DIAG_GSM_CALL_END_F ends the call.
    bool DIAG_GSM_CALL_END_F();

private:
    CommandFrame& m_frame;
};
