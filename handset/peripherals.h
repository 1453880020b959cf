// The simulated handset's camera, microphone and Bluetooth chip, as factory tests see them.
#pragma once

#include "handset/bytes.h"

namespace handset {

/// No lock of its own.
struct Peripherals {
    static constexpr uint16_t kBluetoothLogType = 0x1007;

    Bytes picture = Bytes(3000, 0x50); // the encoded picture
    bool isCameraOn = false;
    bool isPreviewing = false;
    bool isPictureTaken = false;
    uint16_t cameraStart = 0; // the response status of a start while the camera is off

    Bytes recording = Bytes(2000, 0x60); // the recorded sound
    bool isRecording = false;

    std::vector<Bytes> hciCommands;              // received by the Bluetooth chip, in order
    Bytes version = {4, 1, 2, 3, 0x1D, 0, 5, 6}; // its version, 8 bytes
};

} // namespace handset
