#include "ftm/camera.h"

#include "ftm/peripheral_command.h"

bool FtmCamera::FTM_CAMERA_START(unsigned short& iCameraStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_CAMERA_START( )");
    m_frame.FormatCameraFTMHeader(0, 10, 12);
    const bool bPassed = SendForStatus(m_frame, "FTM_CAMERA_START", iCameraStatus);
    m_bStarted = m_bStarted || bPassed;
    return bPassed;
}

bool FtmCamera::FTM_CAMERA_STOP(unsigned short& iCameraStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_CAMERA_STOP( )");
    m_frame.FormatCameraFTMHeader(1, 10, 12);
    const bool bPassed = SendForStatus(m_frame, "FTM_CAMERA_STOP", iCameraStatus);
    m_bStarted = m_bStarted && !bPassed;
    return bPassed;
}

bool FtmCamera::FTM_CAMERA_SET_PARM(unsigned short iParmId, DWORD iParmValue, unsigned short& iCameraStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_CAMERA_SET_PARM( iParmId = %d, iParmValue = %d )", iParmId,
                             AsInt(iParmValue));
    m_frame.FormatCameraFTMHeader(2, 16, 12).U16(iParmId).U32(iParmValue);
    return SendForStatus(m_frame, "FTM_CAMERA_SET_PARM", iCameraStatus);
}

bool FtmCamera::FTM_CAMERA_SET_DIMENSIONS(unsigned short iPictureWidth, unsigned short iPictureHeight,
                                          unsigned short iLCDWidth, unsigned short& iCameraStatus) {
    m_frame.Log().LogMessage(
        LOG_FN, "QLIB_FTM_CAMERA_SET_DIMENSIONS( iPictureWidth = %d, iPictureHeight = %d, iLCDWidth = %d )",
        iPictureWidth, iPictureHeight, iLCDWidth);
    m_frame.FormatCameraFTMHeader(3, 14, 12).U16(iPictureWidth).U16(iPictureHeight).U16(iLCDWidth);
    return SendForStatus(m_frame, "FTM_CAMERA_SET_DIMENSIONS", iCameraStatus);
}

bool FtmCamera::FTM_CAMERA_START_PREVIEW(unsigned short& iCameraStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_CAMERA_START_PREVIEW( )");
    m_frame.FormatCameraFTMHeader(4, 0, 12);
    return SendForStatus(m_frame, "FTM_CAMERA_START_PREVIEW", iCameraStatus);
}

bool FtmCamera::FTM_CAMERA_STOP_PREVIEW(unsigned short& iCameraStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_CAMERA_STOP_PREVIEW( )");
    m_frame.FormatCameraFTMHeader(5, 0, 12);
    return SendForStatus(m_frame, "FTM_CAMERA_STOP_PREVIEW", iCameraStatus);
}

bool FtmCamera::FTM_CAMERA_GET_PARM(unsigned short iParmId, DWORD& iMinimum, DWORD& iMaximum, DWORD& iStep,
                                    DWORD& iDefault, DWORD& iCurrent, unsigned short& iParmStatus,
                                    unsigned short& iCameraStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_CAMERA_GET_PARM( iParmId = %d )", iParmId);
    m_frame.FormatCameraFTMHeader(8, 12, 12).U16(iParmId);
    return SendForStatus(m_frame, "FTM_CAMERA_GET_PARM", iCameraStatus, iParmStatus, iCurrent, iDefault,
                         iStep, iMaximum, iMinimum);
}

bool FtmCamera::FTM_CAMERA_GET_INFO(unsigned short& iOrientation, unsigned short& iRotation,
                                    unsigned char& iSensorRotation, unsigned short& iSensorWidth,
                                    unsigned short& iSensorHeight, unsigned short& iCameraStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_CAMERA_GET_INFO( )");
    m_frame.FormatCameraFTMHeader(9, 10, 21);
    return SendForStatus(m_frame, "FTM_CAMERA_GET_INFO", iCameraStatus, iSensorHeight, iSensorWidth,
                         iSensorRotation, iRotation, iOrientation);
}

bool FtmCamera::FTM_CAMERA_SET_SENSOR_ID(unsigned char iSensorID, unsigned short& iCameraStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_CAMERA_SET_SENSOR_ID( iSensorID = %d )", iSensorID);
    m_frame.FormatCameraFTMHeader(10, 11, 12).U8(iSensorID);
    return SendForStatus(m_frame, "FTM_CAMERA_SET_SENSOR_ID", iCameraStatus);
}
