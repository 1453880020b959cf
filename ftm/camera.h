// The camera: settings, and taking and reading a picture.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// The settings for a picture. All values are phone-specific.
struct FTM_Camera_PictureSettings {
    unsigned short iParmId; // one parameter to set, and its value
    DWORD iParmValue;
    unsigned short iPictureWidth; // pixels
    unsigned short iPictureHeight;
    unsigned short iLCDWidth;
    DWORD iQuality;
    unsigned short iFormat;
};

/// FtmCamera: every command is one request and its response, within QMSL_TimeOut_SyncRequest. iCameraStatus
/// is the phone's status: 0 when the command worked, otherwise the reason; 1 also when no response arrived or
/// it has no status. True means status 0 and all values present. Other out-values are written all or none.
/// Values are phone-specific and passed on unchanged. Caller's thread. The frame must outlive it.
class QUILLET_API FtmCamera {
public:
    explicit FtmCamera(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_CAMERA_START, FTM_CAMERA_STOP switch the camera on and off.
    bool FTM_CAMERA_START(unsigned short& iCameraStatus);
    bool FTM_CAMERA_STOP(unsigned short& iCameraStatus);
    /// IsCameraStarted: the camera has been started, and not stopped since.
    bool IsCameraStarted() const { return m_bStarted; }

    /// FTM_CAMERA_SET_PARM sets one parameter.
    bool FTM_CAMERA_SET_PARM(unsigned short iParmId, DWORD iParmValue, unsigned short& iCameraStatus);
    /// FTM_CAMERA_SET_DIMENSIONS sets the size of later pictures and the width of the display, in pixels.
    bool FTM_CAMERA_SET_DIMENSIONS(unsigned short iPictureWidth, unsigned short iPictureHeight,
                                   unsigned short iLCDWidth, unsigned short& iCameraStatus);
    /// FTM_CAMERA_SET_SENSOR_ID selects the sensor.
    bool FTM_CAMERA_SET_SENSOR_ID(unsigned char iSensorID, unsigned short& iCameraStatus);
    /// FTM_CAMERA_START_PREVIEW, FTM_CAMERA_STOP_PREVIEW show the camera's picture on the display, and end
    /// that.
    bool FTM_CAMERA_START_PREVIEW(unsigned short& iCameraStatus);
    bool FTM_CAMERA_STOP_PREVIEW(unsigned short& iCameraStatus);

    /// FTM_CAMERA_GET_PARM reads the range and the value of a parameter. The response has the five numbers in
    /// this order after its header, then iParmStatus (the parameter's own status), then the status.
    bool FTM_CAMERA_GET_PARM(unsigned short iParmId, DWORD& iMinimum, DWORD& iMaximum, DWORD& iStep,
                             DWORD& iDefault, DWORD& iCurrent, unsigned short& iParmStatus,
                             unsigned short& iCameraStatus);
    /// FTM_CAMERA_GET_INFO reads how the sensor is mounted, and its size in pixels. The response has the
    /// values in this order, the status last.
    bool FTM_CAMERA_GET_INFO(unsigned short& iOrientation, unsigned short& iRotation,
                             unsigned char& iSensorRotation, unsigned short& iSensorWidth,
                             unsigned short& iSensorHeight, unsigned short& iCameraStatus);

    /// FTM_CAMERA_TAKE_PICTURE_AND_ENCODE takes a picture and reads its size in bytes.
    bool FTM_CAMERA_TAKE_PICTURE_AND_ENCODE(DWORD iQuality, unsigned short iFormat, DWORD& iPictureSize,
                                            unsigned short& iCameraStatus);
    /// FTM_CAMERA_GET_PICTURE reads a piece of the picture. The response repeats the offset and has the size,
    /// then the data and the status. False, with nothing written but the status, when they do not match the
    /// request.
    ///   iDataSize  in: how much to read, and the room in piData; out: how much was read
    bool FTM_CAMERA_GET_PICTURE(DWORD iDataOffset, unsigned short& iDataSize, unsigned char* piData,
                                unsigned short& iCameraStatus);

    /// FTM_CAMERA_PerformTakePictureSequence takes a picture from any state of the camera. It starts, stops
    /// and starts the camera (the first two may fail; they bring it to a known state), sets the parameter,
    /// reads the information, sets the dimensions, starts and stops the preview, and takes the picture. It
    /// ends at the first step that fails, and leaves the camera in that state. The status is the last step's.
    bool FTM_CAMERA_PerformTakePictureSequence(const FTM_Camera_PictureSettings& settings,
                                               DWORD& iPictureSize, unsigned short& iCameraStatus);
    /// FTM_CAMERA_GetEntirePicture reads a picture of iPictureSize bytes, which is also the room in
    /// piPicture, in pieces of iTransferSize bytes (at most 4076, what a response can carry). Then it stops
    /// the camera, also when a piece failed. True when every byte arrived and the camera stopped.
    bool FTM_CAMERA_GetEntirePicture(DWORD iPictureSize, unsigned short iTransferSize,
                                     unsigned char* piPicture);

private:
    bool ReadPicture(DWORD iPictureSize, unsigned short iTransferSize, unsigned char* piPicture);

    CommandFrame& m_frame;
    bool m_bStarted = false;
};
