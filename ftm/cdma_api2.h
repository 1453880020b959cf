// The second CDMA calibration interface: the phone calibrates a receive path by itself.
#pragma once

#include "platform/export.h"

class CommandFrame;
class RequestBuilder;

/// CdmaApi2: every command is one request and its response, within QMSL_TimeOut_SyncRequest. It sets system
/// mode 18 and leaves it set. Phones support it only with command type 75; with type 59 every command fails.
/// Units are phone-specific. Caller's thread. The frame must outlive it.
///
/// A calibration has 3 results for path 0 and 1 for path 1. It fails for other paths, when the response has
/// another number of results or lacks one, and when they do not fit in the caller's room. Count and values
/// are then unchanged. A count is the room at piValues on entry, and the number of results on return.
class QUILLET_API CdmaApi2 {
public:
    /// The bytes that FTM_CDMA_API2_CALIBRATE_INTELLICEIVER writes.
    static constexpr size_t kIntelliceiverSize = 14;

    explicit CdmaApi2(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_CDMA_API2_COMMIT_RF_TO_NV makes the phone store a band class's calibration (8 bits are sent).
    bool FTM_CDMA_API2_COMMIT_RF_TO_NV(unsigned short iBandClass);

    /// FTM_CDMA_API2_CALIBRATE_DVGA, FTM_CDMA_API2_CALIBRATE_LNA calibrate the digital amplifier or one step
    /// of the low-noise amplifier. iCount is in values.
    bool FTM_CDMA_API2_CALIBRATE_DVGA(unsigned char iPath, unsigned short iInputPower, unsigned char& iCount,
                                      unsigned short* piValues);
    bool FTM_CDMA_API2_CALIBRATE_LNA(unsigned char iPath, unsigned short iInputPower, unsigned char iLNAstep,
                                     unsigned char& iCount, unsigned short* piValues);

    /// FTM_CDMA_API2_CALIBRATE_IM2: each result is three bytes. iCount is in bytes on entry and in results on
    /// return. iResult is the phone's own result of the calibration. It is written whenever it arrived, even
    /// if the rest fails.
    bool FTM_CDMA_API2_CALIBRATE_IM2(unsigned char iPath, unsigned short& iResult, unsigned char& iCount,
                                     unsigned char* piValues);

    /// FTM_CDMA_API2_CALIBRATE_INTELLICEIVER fills piValues (kIntelliceiverSize bytes). False also when the
    /// phone reports failure. iInputPower is not written.
    bool FTM_CDMA_API2_CALIBRATE_INTELLICEIVER(unsigned char iPath, unsigned short& iInputPower,
                                               unsigned char* piValues);

private:
    RequestBuilder& BeginCdmaApi2(unsigned short iCommandId);
    bool ExchangeCdmaApi2();
    bool ReadGains(unsigned char iPath, unsigned char& iCount, unsigned short* piValues);

    CommandFrame& m_frame;
};
