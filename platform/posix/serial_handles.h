// The table of open serial ports, and the common part of every call on a handle.
#pragma once

#include <memory>

#include "platform/posix/serial_device.h"

/// AddSerialHandle adds a device and returns its handle. Handle values are never reused. May throw
/// std::bad_alloc.
HANDLE AddSerialHandle(std::shared_ptr<SerialDevice> pDevice);

/// FindSerialDevice returns the device of a handle, or null if the handle is not open.
std::shared_ptr<SerialDevice> FindSerialDevice(HANDLE hPort);

/// WithPort calls `operation` with the handle's device. The error number that it returns (0 for success)
/// becomes the result and the last error of the call.
template <class Operation>
BOOL WithPort(HANDLE hPort, Operation operation) {
    const std::shared_ptr<SerialDevice> pDevice = FindSerialDevice(hPort);
    const DWORD iError = pDevice != nullptr ? operation(*pDevice) : kErrorInvalidHandle;
    SetLastError(iError);
    return iError == 0;
}
