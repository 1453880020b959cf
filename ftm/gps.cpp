#include "ftm/gps.h"

#include "ftm/ftm_command.h"

namespace {

/// Send exchanges a command whose entry line shows all its fields. True when the phone answered.
template <class... Fields>
bool Send(CommandFrame& frame, unsigned short iCommandId, TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, frame.FormatAGPS_FTMHeader(iCommandId), entry, fields...);
    return frame.Send(0);
}

} // namespace

bool FtmGps::FTM_AGPS_SET_TEST_MODE(unsigned char iOnOff) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_AGPS_SET_TEST_MODE( iOnOff = %d )", iOnOff);
    m_frame.SetSystemMode(FTM_MODE_ID_AGPS);
    m_frame.FormatAGPS_FTMHeader(0).U8(iOnOff);
    return m_frame.Send(0);
}

bool FtmGps::FTM_AGPS_SELF_TEST(unsigned char& iPassFail) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_AGPS_SELF_TEST( )");
    m_frame.FormatAGPS_FTMHeader(1).U8(iPassFail);
    return m_frame.Send(0) && TakeLogged(m_frame, "QLIB_FTM_AGPS_SELF_TEST( iPassFail = %d)", iPassFail);
}

bool FtmGps::FTM_AGPS_IDLE_MODE() {
    return Send(m_frame, 2, "QLIB_FTM_AGPS_IDLE_MODE( )");
}

bool FtmGps::FTM_AGPS_STANDALONE_TEST_MODE() {
    return Send(m_frame, 3, "QLIB_FTM_AGPS_STANDALONE_TEST_MODE( )");
}

bool FtmGps::FTM_AGPS_SV_TRACKING(unsigned char iSatelliteVehicleId) {
    return Send(m_frame, 4, "QLIB_FTM_AGPS_SV_TRACKING( iSatelliteVehicleId = %d )", iSatelliteVehicleId);
}

bool FtmGps::FTM_AGPS_IQ_CAPTURE(DWORD iCenterFreq_Hz, DWORD iSampleFreq_Hz, unsigned short iStartDelay,
                                 unsigned char iCaptureType, unsigned short iCaptureSize) {
    return Send(m_frame, 5,
                "QLIB_FTM_AGPS_IQ_CAPTURE( iCenterFreq_Hz = %d, iSampleFreq_Hz = %d, "
                "iStartDelay = %d, iCaptureType = %d, iCaptureSize = %d )",
                iCenterFreq_Hz, iSampleFreq_Hz, iStartDelay, iCaptureType, iCaptureSize);
}

bool FtmGps::FTM_AGPS_GET_IQ_DATA(unsigned char* piIData, unsigned char* piQData) {
    return Send(m_frame, 6, "QLIB_FTM_AGPS_GET_IQ_DATA( )") &&
           TakeLogged(m_frame, "QLIB_FTM_AGPS_GET_IQ_DATA( *piIData = %d, *piQData = %d)", *piIData,
                      *piQData);
}
