// The GPS receiver: test modes, self test, satellite tracking, I/Q capture.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// FtmGps: every command is one request and its answer, within QMSL_TimeOut_SyncRequest; true means that the
/// handset answered, in whatever system mode, with all values. Caller's thread. The frame must outlive it.
class QUILLET_API FtmGps {
public:
    explicit FtmGps(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_AGPS_SET_TEST_MODE sets the connection's system mode to that of GPS first, and leaves it so.
    bool FTM_AGPS_SET_TEST_MODE(unsigned char iOnOff);
    /// FTM_AGPS_SELF_TEST: iPassFail is the handset's verdict.
    bool FTM_AGPS_SELF_TEST(unsigned char& iPassFail);
    bool FTM_AGPS_IDLE_MODE();
    bool FTM_AGPS_STANDALONE_TEST_MODE();
    bool FTM_AGPS_SV_TRACKING(unsigned char iSatelliteVehicleId);
    /// FTM_AGPS_IQ_CAPTURE: what iCaptureType and iCaptureSize mean, and the unit of iStartDelay, is the
    /// handset's.
    bool FTM_AGPS_IQ_CAPTURE(DWORD iCenterFreq_Hz, DWORD iSampleFreq_Hz, unsigned short iStartDelay,
                             unsigned char iCaptureType, unsigned short iCaptureSize);
    /// FTM_AGPS_GET_IQ_DATA reads one sample: the last two bytes of the answer, I in front of Q. As the
    /// caller says no size, exactly one byte is written to each.
    bool FTM_AGPS_GET_IQ_DATA(unsigned char* piIData, unsigned char* piQData);

private:
    CommandFrame& m_frame;
};
