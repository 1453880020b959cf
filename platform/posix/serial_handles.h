// The table of open serial ports, and the frame that every call on a handle has.
#pragma once

#include <memory>

#include "platform/posix/serial_device.h"

/// AddSerialHandle enters a device and returns its handle, a value that is never given out again; may
/// throw std::bad_alloc.
HANDLE AddSerialHandle(std::shared_ptr<SerialDevice> pDevice);

/// FindSerialDevice returns the device of a handle, or null for a handle that is not open.
std::shared_ptr<SerialDevice> FindSerialDevice(HANDLE hPort);

/// WithPort calls `operation` with the handle's device and makes the error number that it returns (0 for
/// success) the call's result and last error.
template <class Operation>
BOOL WithPort(HANDLE hPort, Operation operation) {
    const std::shared_ptr<SerialDevice> pDevice = FindSerialDevice(hPort);
    const DWORD iError = pDevice != nullptr ? operation(*pDevice) : kErrorInvalidHandle;
    SetLastError(iError);
    return iError == 0;
}
