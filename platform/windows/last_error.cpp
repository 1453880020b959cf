// The thread's last error: the system's own.
#include "platform/last_error.h"

#include "system/serial.h"

void SetThreadLastError(DWORD iError) {
    SetLastError(iError);
}
