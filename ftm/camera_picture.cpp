// Taking a picture and reading it in pieces.
#include <algorithm>

#include "ftm/camera.h"
#include "ftm/camera_command.h"

namespace {

/// The bytes of a response that are not picture data: header, offset, size, status.
constexpr unsigned short kPieceFrame = kPeripheralHeader + 8;

} // namespace

bool FtmCamera::FTM_CAMERA_TAKE_PICTURE_AND_ENCODE(DWORD iQuality, unsigned short iFormat,
                                                   DWORD& iPictureSize, unsigned short& iCameraStatus) {
    static constexpr char sLine[] = "QLIB_FTM_CAMERA_TAKE_PICTURE_AND_ENCODE( iQuality = %d, iFormat = %d )";
    AppendLogged(m_frame, BeginCamera(m_frame, kCameraTakePictureAndEncode), sLine, iQuality, iFormat);
    return SendForStatus(m_frame, sLine, iCameraStatus, iPictureSize);
}

bool FtmCamera::FTM_CAMERA_GET_PICTURE(DWORD iDataOffset, unsigned short& iDataSize, unsigned char* piData,
                                       unsigned short& iCameraStatus) {
    return SendSetting(m_frame, BeginCamera(m_frame, kCameraGetPicture, iDataSize), iCameraStatus,
                       "QLIB_FTM_CAMERA_GET_PICTURE( iDataOffset = %d, iDataSize = %d )", iDataOffset,
                       iDataSize) &&
           TakePiece(m_frame, iDataOffset, iDataSize, piData, sizeof iCameraStatus);
}

bool FtmCamera::FTM_CAMERA_PerformTakePictureSequence(const FTM_Camera_PictureSettings& settings,
                                                      DWORD& iPictureSize, unsigned short& iCameraStatus) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_CAMERA_PerformTakePictureSequence( )");
    unsigned short iOrientation = 0;
    unsigned short iRotation = 0;
    unsigned char iSensorRotation = 0;
    unsigned short iWidth = 0;
    unsigned short iHeight = 0;
    FTM_CAMERA_START(iCameraStatus);
    FTM_CAMERA_STOP(iCameraStatus);
    return FTM_CAMERA_START(iCameraStatus) &&
           FTM_CAMERA_SET_PARM(settings.iParmId, settings.iParmValue, iCameraStatus) &&
           FTM_CAMERA_GET_INFO(iOrientation, iRotation, iSensorRotation, iWidth, iHeight, iCameraStatus) &&
           FTM_CAMERA_SET_DIMENSIONS(settings.iPictureWidth, settings.iPictureHeight, settings.iLCDWidth,
                                     iCameraStatus) &&
           FTM_CAMERA_START_PREVIEW(iCameraStatus) && FTM_CAMERA_STOP_PREVIEW(iCameraStatus) &&
           FTM_CAMERA_TAKE_PICTURE_AND_ENCODE(settings.iQuality, settings.iFormat, iPictureSize,
                                              iCameraStatus);
}

bool FtmCamera::ReadPicture(DWORD iPictureSize, unsigned short iTransferSize, unsigned char* piPicture) {
    const DWORD iPieceSize = std::min<unsigned short>(iTransferSize, kLongestResponse - kPieceFrame);
    unsigned short iStatus = 0;
    for (DWORD iRead = 0; iRead < iPictureSize;) {
        auto iPiece = static_cast<unsigned short>(std::min(iPieceSize, iPictureSize - iRead));
        if (!FTM_CAMERA_GET_PICTURE(iRead, iPiece, piPicture + iRead, iStatus) || iPiece == 0)
            return false;
        iRead += iPiece;
    }
    return true;
}

bool FtmCamera::FTM_CAMERA_GetEntirePicture(DWORD iPictureSize, unsigned short iTransferSize,
                                            unsigned char* piPicture) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_CAMERA_GetEntirePicture( iPictureSize = %d, iTransferSize = %d )",
            iPictureSize, iTransferSize);
    const bool bRead = iTransferSize > 0 && ReadPicture(iPictureSize, iTransferSize, piPicture);
    unsigned short iStatus = 0;
    return FTM_CAMERA_STOP(iStatus) && bRead;
}
