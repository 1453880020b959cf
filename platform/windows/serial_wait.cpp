// Waiting for the serial port's input: the port is polled once per millisecond.
#include "platform/serial_wait.h"

#include "system/serial.h"

void WaitForSerialInput(void*, DWORD iLimit_ms) {
    if (iLimit_ms > 0)
        Sleep(1);
}
