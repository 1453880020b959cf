// The thread's last error: errno.
#include "platform/last_error.h"

#include <cerrno>

void SetThreadLastError(DWORD iError) {
    errno = iError == kErrorNoMoreFiles ? ENODATA : EIO;
}
