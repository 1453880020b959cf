// The GPS receiver: its test modes and measurements.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// FtmGps: every command is one request and its response, within QMSL_TimeOut_SyncRequest. True means that
/// the phone answered, in any system mode, with all values. Caller's thread. The frame must outlive it.
class QUILLET_API FtmGps {
public:
    explicit FtmGps(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_AGPS_SET_TEST_MODE sets the connection's system mode to that of GPS first, and leaves it set.
    bool FTM_AGPS_SET_TEST_MODE(unsigned char iOnOff);
    /// FTM_AGPS_SELF_TEST: iPassFail is the phone's result.
    bool FTM_AGPS_SELF_TEST(unsigned char& iPassFail);
    /// FTM_AGPS_IDLE_MODE puts the receiver into its idle mode.
    bool FTM_AGPS_IDLE_MODE();
    /// FTM_AGPS_STANDALONE_TEST_MODE selects the test without assistance from a network.
    bool FTM_AGPS_STANDALONE_TEST_MODE();
    /// FTM_AGPS_SV_TRACKING makes the receiver track one satellite.
    bool FTM_AGPS_SV_TRACKING(unsigned char iSatelliteVehicleId);
    /// FTM_AGPS_IQ_CAPTURE: the unit of iStartDelay and the meaning of iCaptureType and iCaptureSize are
    /// phone-specific.
    bool FTM_AGPS_IQ_CAPTURE(DWORD iCenterFreq_Hz, DWORD iSampleFreq_Hz, unsigned short iStartDelay,
                             unsigned char iCaptureType, unsigned short iCaptureSize);
    /// FTM_AGPS_GET_IQ_DATA reads one sample: the last two bytes of the response, I before Q. It writes
    /// exactly one byte to each pointer.
    bool FTM_AGPS_GET_IQ_DATA(unsigned char* piIData, unsigned char* piQData);

private:
    CommandFrame& m_frame;
};
