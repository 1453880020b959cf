// The commands of the camera.
#pragma once

#include "ftm/peripheral_command.h"

/// A command's id, and the lengths in its request's header, in bytes. The lengths are those that the phone's
/// software expects; some leave out fields that the request or the response carries.
struct CameraCommand {
    unsigned short iId;
    unsigned short iRequestLength;
    unsigned short iResponseLength;
};

constexpr CameraCommand kCameraStart{0, kPeripheralHeader, kStatusResponse};
constexpr CameraCommand kCameraStop{1, kPeripheralHeader, kStatusResponse};
constexpr CameraCommand kCameraSetParm{2, kPeripheralHeader + 6, kStatusResponse};
constexpr CameraCommand kCameraSetDimensions{3, kPeripheralHeader + 4, kStatusResponse}; // without LCD width
constexpr CameraCommand kCameraStartPreview{4, 0, kStatusResponse};
constexpr CameraCommand kCameraStopPreview{5, 0, kStatusResponse};
constexpr CameraCommand kCameraTakePictureAndEncode{6, kPeripheralHeader, kStatusResponse + 4}; // no fields
constexpr CameraCommand kCameraGetPicture{7, kPeripheralHeader + 6, kStatusResponse + 6}; // plus the data
constexpr CameraCommand kCameraGetParm{8, kPeripheralHeader + 2, kStatusResponse};        // without values
constexpr CameraCommand kCameraGetInfo{9, kPeripheralHeader, kStatusResponse + 9};
constexpr CameraCommand kCameraSetSensorId{10, kPeripheralHeader + 1, kStatusResponse};

/// BeginCamera begins a request; the command's fields follow. iDataSize: bytes of picture data that the
/// response carries as well.
inline RequestBuilder& BeginCamera(CommandFrame& frame, const CameraCommand& command, size_t iDataSize = 0) {
    return frame.FormatCameraFTMHeader(command.iId, command.iRequestLength,
                                       static_cast<unsigned short>(command.iResponseLength + iDataSize));
}
