// Waiting for the serial port's input.
#pragma once

#include "platform/types.h"

/// WaitForSerialInput returns when the port may have bytes to read, when it was closed, and at the latest
/// after iLimit_ms: at once where the system can tell that bytes have arrived (Linux), after one millisecond
/// where it cannot (Windows). A port whose device is gone, or that is not open, does not make it return in
/// a tight loop. `hPort` is a handle of CreateFileA.
void WaitForSerialInput(void* hPort, DWORD iLimit_ms);
