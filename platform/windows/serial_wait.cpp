// Input that waits in the serial port; the port is polled every millisecond.
#include "platform/serial_wait.h"

#include "system/serial.h"

bool WaitForSerialInput(void*, DWORD iLimit_ms) {
    if (iLimit_ms > 0)
        Sleep(1);
    return true;
}

DWORD WaitingSerialInput(void* hPort) {
    COMSTAT stat{};
    DWORD iErrors = 0;
    return ClearCommError(hPort, &iErrors, &stat) ? stat.cbInQue : 0;
}
