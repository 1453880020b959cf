#include "ftm/camera.h"

#include "ftm/camera_command.h"

bool FtmCamera::FTM_CAMERA_START(unsigned short& iCameraStatus) {
    const bool bPassed =
        SendSetting(m_frame, BeginCamera(m_frame, kCameraStart), iCameraStatus, "QLIB_FTM_CAMERA_START( )");
    m_bStarted = m_bStarted || bPassed;
    return bPassed;
}

bool FtmCamera::FTM_CAMERA_STOP(unsigned short& iCameraStatus) {
    const bool bPassed =
        SendSetting(m_frame, BeginCamera(m_frame, kCameraStop), iCameraStatus, "QLIB_FTM_CAMERA_STOP( )");
    m_bStarted = m_bStarted && !bPassed;
    return bPassed;
}

bool FtmCamera::FTM_CAMERA_SET_PARM(unsigned short iParmId, DWORD iParmValue, unsigned short& iCameraStatus) {
    return SendSetting(m_frame, BeginCamera(m_frame, kCameraSetParm), iCameraStatus,
                       "QLIB_FTM_CAMERA_SET_PARM( iParmId = %d, iParmValue = %d )", iParmId, iParmValue);
}

bool FtmCamera::FTM_CAMERA_SET_DIMENSIONS(unsigned short iPictureWidth, unsigned short iPictureHeight,
                                          unsigned short iLCDWidth, unsigned short& iCameraStatus) {
    return SendSetting(
        m_frame, BeginCamera(m_frame, kCameraSetDimensions), iCameraStatus,
        "QLIB_FTM_CAMERA_SET_DIMENSIONS( iPictureWidth = %d, iPictureHeight = %d, iLCDWidth = %d )",
        iPictureWidth, iPictureHeight, iLCDWidth);
}

bool FtmCamera::FTM_CAMERA_START_PREVIEW(unsigned short& iCameraStatus) {
    return SendSetting(m_frame, BeginCamera(m_frame, kCameraStartPreview), iCameraStatus,
                       "QLIB_FTM_CAMERA_START_PREVIEW( )");
}

bool FtmCamera::FTM_CAMERA_STOP_PREVIEW(unsigned short& iCameraStatus) {
    return SendSetting(m_frame, BeginCamera(m_frame, kCameraStopPreview), iCameraStatus,
                       "QLIB_FTM_CAMERA_STOP_PREVIEW( )");
}

bool FtmCamera::FTM_CAMERA_GET_PARM(unsigned short iParmId, DWORD& iMinimum, DWORD& iMaximum, DWORD& iStep,
                                    DWORD& iDefault, DWORD& iCurrent, unsigned short& iParmStatus,
                                    unsigned short& iCameraStatus) {
    static constexpr char sLine[] = "QLIB_FTM_CAMERA_GET_PARM( iParmId = %d )";
    AppendLogged(m_frame, BeginCamera(m_frame, kCameraGetParm), sLine, iParmId);
    return SendForStatus(m_frame, sLine, iCameraStatus, iMinimum, iMaximum, iStep, iDefault, iCurrent,
                         iParmStatus);
}

bool FtmCamera::FTM_CAMERA_GET_INFO(unsigned short& iOrientation, unsigned short& iRotation,
                                    unsigned char& iSensorRotation, unsigned short& iSensorWidth,
                                    unsigned short& iSensorHeight, unsigned short& iCameraStatus) {
    static constexpr char sLine[] = "QLIB_FTM_CAMERA_GET_INFO( )";
    AppendLogged(m_frame, BeginCamera(m_frame, kCameraGetInfo), sLine);
    return SendForStatus(m_frame, sLine, iCameraStatus, iOrientation, iRotation, iSensorRotation,
                         iSensorWidth, iSensorHeight);
}

bool FtmCamera::FTM_CAMERA_SET_SENSOR_ID(unsigned char iSensorID, unsigned short& iCameraStatus) {
    return SendSetting(m_frame, BeginCamera(m_frame, kCameraSetSensorId), iCameraStatus,
                       "QLIB_FTM_CAMERA_SET_SENSOR_ID( iSensorID = %d )", iSensorID);
}
