// The camera: parameters, preview, taking a picture and fetching it.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// What is set up for a picture; all values are the handset's.
struct FTM_Camera_PictureSettings {
    unsigned short iParmId; // one parameter to set, and its value
    DWORD iParmValue;
    unsigned short iPictureWidth; // pixels
    unsigned short iPictureHeight;
    unsigned short iLCDWidth;
    DWORD iQuality;
    unsigned short iFormat;
};

/// FtmCamera: every command is one request and its answer, within QMSL_TimeOut_SyncRequest. iCameraStatus is
/// what the handset says: 0 when it worked, otherwise its reason, 1 also when no answer came or the answer is
/// too short for a status. True means status 0 with all values there; other out-values are written together
/// or not at all. Values are the handset's and are passed on unchanged. Caller's thread. The frame must
/// outlive it.
class QUILLET_API FtmCamera {
public:
    explicit FtmCamera(CommandFrame& frame) : m_frame(frame) {}

    bool FTM_CAMERA_START(unsigned short& iCameraStatus);
    bool FTM_CAMERA_STOP(unsigned short& iCameraStatus);
    /// IsCameraStarted: the camera was started, and not stopped since.
    bool IsCameraStarted() const { return m_bStarted; }

    bool FTM_CAMERA_SET_PARM(unsigned short iParmId, DWORD iParmValue, unsigned short& iCameraStatus);
    bool FTM_CAMERA_SET_DIMENSIONS(unsigned short iPictureWidth, unsigned short iPictureHeight,
                                   unsigned short iLCDWidth, unsigned short& iCameraStatus);
    bool FTM_CAMERA_SET_SENSOR_ID(unsigned char iSensorID, unsigned short& iCameraStatus);
    bool FTM_CAMERA_START_PREVIEW(unsigned short& iCameraStatus);
    bool FTM_CAMERA_STOP_PREVIEW(unsigned short& iCameraStatus);

    /// FTM_CAMERA_GET_PARM reads what a parameter can be and is; in the answer the five numbers stand in this
    /// order behind the header, then iParmStatus (the handset's word on the parameter), then the status.
    bool FTM_CAMERA_GET_PARM(unsigned short iParmId, DWORD& iMinimum, DWORD& iMaximum, DWORD& iStep,
                             DWORD& iDefault, DWORD& iCurrent, unsigned short& iParmStatus,
                             unsigned short& iCameraStatus);
    /// FTM_CAMERA_GET_INFO reads how the sensor is mounted and its size in pixels; in the answer the values
    /// stand in this order, the status last.
    bool FTM_CAMERA_GET_INFO(unsigned short& iOrientation, unsigned short& iRotation,
                             unsigned char& iSensorRotation, unsigned short& iSensorWidth,
                             unsigned short& iSensorHeight, unsigned short& iCameraStatus);

    /// FTM_CAMERA_TAKE_PICTURE_AND_ENCODE takes a picture; its size in bytes comes out.
    bool FTM_CAMERA_TAKE_PICTURE_AND_ENCODE(DWORD iQuality, unsigned short iFormat, DWORD& iPictureSize,
                                            unsigned short& iCameraStatus);
    /// FTM_CAMERA_GET_PICTURE reads a piece of the picture. Its answer carries the offset and the size again,
    /// then the data and the status; what does not fit what was asked for is refused with nothing written.
    ///   iDataSize  in: how much to read and the room in piData; out: how much came
    bool FTM_CAMERA_GET_PICTURE(DWORD iDataOffset, unsigned short& iDataSize, unsigned char* piData,
                                unsigned short& iCameraStatus);

    /// FTM_CAMERA_PerformTakePictureSequence takes a picture from any state of the camera: it starts, stops
    /// and starts it (the first two may fail, they bring it to a known state), sets the parameter, reads the
    /// information, sets the dimensions, starts and stops the preview, takes the picture. It ends with the
    /// first step that fails, and then leaves the camera as that step did. The status is the last step's.
    bool FTM_CAMERA_PerformTakePictureSequence(const FTM_Camera_PictureSettings& settings,
                                               DWORD& iPictureSize, unsigned short& iCameraStatus);
    /// FTM_CAMERA_GetEntirePicture reads a taken picture of iPictureSize bytes, for which piPicture has room,
    /// in pieces of iTransferSize bytes (at most 4076, what an answer holds), then stops the camera, also
    /// when a piece fails. True when every byte came and the camera stopped.
    bool FTM_CAMERA_GetEntirePicture(DWORD iPictureSize, unsigned short iTransferSize,
                                     unsigned char* piPicture);

private:
    bool ReadPicture(DWORD iPictureSize, unsigned short iTransferSize, unsigned char* piPicture);

    CommandFrame& m_frame;
    bool m_bStarted = false;
};
