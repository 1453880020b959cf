// Input that waits in the serial port, and waiting for it.
#pragma once

#include "platform/types.h"

/// WaitForSerialInput returns when the port may have bytes to read, when it is closed, or after iLimit_ms.
/// Linux reports the arrival of bytes at once; on Windows, which does not, the function returns after one
/// millisecond. It also waits for a port whose device is gone or which is not open, so that callers do not
/// spin. Returns false when the device is gone, which only Linux reports; nothing will arrive any more.
/// `hPort` is a handle from CreateFileA.
bool WaitForSerialInput(void* hPort, DWORD iLimit_ms);

/// WaitingSerialInput returns the number of received bytes that the driver holds, without waiting; 0 when it
/// is unknown or the port is not open. `hPort` is a handle from CreateFileA.
DWORD WaitingSerialInput(void* hPort);
