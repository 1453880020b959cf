#include "ftm/gps.h"

bool FtmGps::FTM_AGPS_SET_TEST_MODE(unsigned char iOnOff) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AGPS_SET_TEST_MODE( iOnOff = %d )", iOnOff);
    m_frame.SetSystemMode(FTM_MODE_ID_AGPS);
    m_frame.FormatAGPS_FTMHeader(0).U8(iOnOff);
    return m_frame.Send(0);
}

bool FtmGps::FTM_AGPS_SELF_TEST(unsigned char& iPassFail) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AGPS_SELF_TEST( )");
    m_frame.FormatAGPS_FTMHeader(1).U8(iPassFail);
    if (!m_frame.Send(0))
        return false;
    const bool bTaken = TakeValues(m_frame, iPassFail);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_AGPS_SELF_TEST( iPassFail = %d)", iPassFail);
    return bTaken;
}

bool FtmGps::FTM_AGPS_IDLE_MODE() {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AGPS_IDLE_MODE( )");
    m_frame.FormatAGPS_FTMHeader(2);
    return m_frame.Send(0);
}

bool FtmGps::FTM_AGPS_STANDALONE_TEST_MODE() {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AGPS_STANDALONE_TEST_MODE( )");
    m_frame.FormatAGPS_FTMHeader(3);
    return m_frame.Send(0);
}

bool FtmGps::FTM_AGPS_SV_TRACKING(unsigned char iSatelliteVehicleId) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AGPS_SV_TRACKING( iSatelliteVehicleId = %d )",
                             iSatelliteVehicleId);
    m_frame.FormatAGPS_FTMHeader(4).U8(iSatelliteVehicleId);
    return m_frame.Send(0);
}

bool FtmGps::FTM_AGPS_IQ_CAPTURE(DWORD iCenterFreq_Hz, DWORD iSampleFreq_Hz, unsigned short iStartDelay,
                                 unsigned char iCaptureType, unsigned short iCaptureSize) {
    m_frame.Log().LogMessage(LOG_FN,
                             "QLIB_FTM_AGPS_IQ_CAPTURE( iCenterFreq_Hz = %d, iSampleFreq_Hz = %d, "
                             "iStartDelay = %d, iCaptureType = %d, iCaptureSize = %d )",
                             AsInt(iCenterFreq_Hz), AsInt(iSampleFreq_Hz), iStartDelay, iCaptureType,
                             iCaptureSize);
    RequestBuilder& request = m_frame.FormatAGPS_FTMHeader(5).U32(iCenterFreq_Hz).U32(iSampleFreq_Hz);
    request.U16(iStartDelay).U8(iCaptureType).U16(iCaptureSize);
    return m_frame.Send(0);
}

bool FtmGps::FTM_AGPS_GET_IQ_DATA(unsigned char* piIData, unsigned char* piQData) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AGPS_GET_IQ_DATA( )");
    m_frame.FormatAGPS_FTMHeader(6);
    if (!m_frame.Send(0))
        return false;
    const bool bTaken = TakeValues(m_frame, *piQData, *piIData);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_AGPS_GET_IQ_DATA( *piIData = %d, *piQData = %d)", *piIData,
                             *piQData);
    return bTaken;
}
