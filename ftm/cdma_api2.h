// The second CDMA calibration interface: the handset calibrates a receive path by itself.
#pragma once

#include "platform/export.h"

class CommandFrame;
class RequestBuilder;

/// CdmaApi2: every command is one request and its answer, within QMSL_TimeOut_SyncRequest, in system mode 18,
/// which it sets and leaves set. Handsets answer it in the form of command type 75 alone; with type 59 every
/// command fails. Units are the handset's. Caller's thread. The frame must outlive it.
///
/// A calibration gives the results of one path: 3 for path 0, 1 for path 1. It fails for other paths, for an
/// answer with another number of results or one that ends before its last one, and when the caller has no
/// room for them all; then count and values are as they were. Counts: in the room at piValues, out the number
/// of results.
class QUILLET_API CdmaApi2 {
public:
    /// Bytes that FTM_CDMA_API2_CALIBRATE_INTELLICEIVER gives.
    static constexpr size_t kIntelliceiverSize = 14;

    explicit CdmaApi2(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_CDMA_API2_COMMIT_RF_TO_NV makes the handset keep a band class's calibration (8 bits are sent).
    bool FTM_CDMA_API2_COMMIT_RF_TO_NV(unsigned short iBandClass);

    /// Both: iCount in values.
    bool FTM_CDMA_API2_CALIBRATE_DVGA(unsigned char iPath, unsigned short iInputPower, unsigned char& iCount,
                                      unsigned short* piValues);
    bool FTM_CDMA_API2_CALIBRATE_LNA(unsigned char iPath, unsigned short iInputPower, unsigned char iLNAstep,
                                     unsigned char& iCount, unsigned short* piValues);

    /// FTM_CDMA_API2_CALIBRATE_IM2: each result is three bytes; iCount comes in in bytes and goes out in
    /// results. iResult is the handset's own word on the calibration, written whenever it came, also when the
    /// rest fails.
    bool FTM_CDMA_API2_CALIBRATE_IM2(unsigned char iPath, unsigned short& iResult, unsigned char& iCount,
                                     unsigned char* piValues);

    /// FTM_CDMA_API2_CALIBRATE_INTELLICEIVER fills piValues (kIntelliceiverSize bytes). False also when the
    /// handset says that it did not succeed. iInputPower is only read.
    bool FTM_CDMA_API2_CALIBRATE_INTELLICEIVER(unsigned char iPath, unsigned short& iInputPower,
                                               unsigned char* piValues);

private:
    RequestBuilder& BeginCdmaApi2(unsigned short iCommandId);
    bool ExchangeCdmaApi2();
    bool ReadGains(unsigned char iPath, unsigned char& iCount, unsigned short* piValues);

    CommandFrame& m_frame;
};
