// Reading and writing an open serial port.
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "platform/posix/serial_handles.h"
#include "platform/posix/test_faults.h"
#include "platform/serial_wait.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// The longest single wait; callers with more time wait again.
constexpr int kLongestWait_ms = 60 * 1000;
// How long a wait for input takes when the device is gone, and when the port is not open.
constexpr int kGoneWait_ms = 50;
constexpr int kNotOpenWait_ms = 1;

bool IsTryAgain() {
    return errno == EAGAIN || errno == EINTR;
}

bool IsHungUp(int fdTty) {
    pollfd polled = {fdTty, POLLIN, 0};
    return poll(&polled, 1, 0) > 0 && (polled.revents & (POLLHUP | POLLERR)) != 0;
}

/// Returns the number of bytes read, 0 when none are waiting, -1 with errno when the device fails or is gone.
ssize_t ReadPending(int fdTty, void* pBuffer, size_t iCount) {
    const ssize_t iRead = read(fdTty, pBuffer, iCount);
    if (iRead > 0)
        return iRead;
    if (iRead < 0)
        return IsTryAgain() ? 0 : -1;
    if (!IsHungUp(fdTty))
        return 0;
    errno = EIO;
    return -1;
}

/// Writes what the device accepts without blocking. Returns the number of bytes, or -1 with errno.
ssize_t WritePending(int fdTty, const BYTE* pData, size_t iCount) {
    if (InjectedFaults().bWritesStall)
        return 0;
    const ssize_t iWritten = write(fdTty, pData, iCount);
    return iWritten < 0 && IsTryAgain() ? 0 : iWritten;
}

Clock::time_point WriteDeadline(const COMMTIMEOUTS& timeouts, DWORD iCount) {
    const uint64_t iBytes_ms = uint64_t{timeouts.WriteTotalTimeoutMultiplier} * iCount;
    const uint64_t iWait_ms = std::min<uint64_t>(iBytes_ms, MAXDWORD) + timeouts.WriteTotalTimeoutConstant;
    return Clock::now() + milliseconds(iWait_ms);
}

/// Waits until the device may accept bytes. False when the time is over. A hung-up device and a closed port
/// return true; the next write detects them.
bool WaitForRoom(SerialDevice& device, Clock::time_point deadline) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    if (left <= milliseconds(0))
        return false;
    const short iEvents = InjectedFaults().bWritesStall ? 0 : POLLOUT;
    const auto iWait_ms = std::min<milliseconds::rep>(left.count(), kLongestWait_ms);
    device.WaitFor(iEvents, static_cast<int>(iWait_ms));
    return true;
}

} // namespace

BOOL PurgeComm(HANDLE hPort, DWORD iFlags) {
    return WithPort(hPort, [&](SerialDevice& device) -> DWORD {
        return device.Operate([&](int fdTty) {
            const int iInput = iFlags & PURGE_RXCLEAR ? tcflush(fdTty, TCIFLUSH) : 0;
            const int iOutput = iFlags & PURGE_TXCLEAR ? tcflush(fdTty, TCOFLUSH) : 0;
            return std::min(iInput, iOutput);
        });
    });
}

BOOL ClearCommError(HANDLE hPort, DWORD* pErrors, COMSTAT* pStat) {
    return WithPort(hPort, [&](SerialDevice& device) -> DWORD {
        int iIn = 0;
        int iOut = 0;
        const DWORD iError = device.Operate([&](int fdTty) {
            // Not every driver reports its pending output.
            if (ioctl(fdTty, TIOCOUTQ, &iOut) != 0)
                iOut = 0;
            return ioctl(fdTty, FIONREAD, &iIn);
        });
        if (pErrors != nullptr)
            *pErrors = 0;
        if (pStat != nullptr)
            *pStat = {static_cast<DWORD>(iIn), static_cast<DWORD>(iOut)};
        return iError;
    });
}

BOOL ReadFile(HANDLE hPort, void* pBuffer, DWORD iCount, DWORD* pRead, void*) {
    *pRead = 0;
    return WithPort(hPort, [&](SerialDevice& device) -> DWORD {
        return device.Operate([&](int fdTty) {
            const ssize_t iRead = ReadPending(fdTty, pBuffer, iCount);
            *pRead = iRead > 0 ? static_cast<DWORD>(iRead) : 0;
            return iRead;
        });
    });
}

BOOL WriteFile(HANDLE hPort, const void* pData, DWORD iCount, DWORD* pWritten, void*) {
    *pWritten = 0;
    return WithPort(hPort, [&](SerialDevice& device) -> DWORD {
        const auto* pBytes = static_cast<const BYTE*>(pData);
        const Clock::time_point deadline = WriteDeadline(device.GetSettings().timeouts, iCount);
        while (true) {
            const DWORD iError = device.Operate([&](int fdTty) {
                const ssize_t iWritten = WritePending(fdTty, pBytes + *pWritten, iCount - *pWritten);
                *pWritten += iWritten > 0 ? static_cast<DWORD>(iWritten) : 0;
                return iWritten;
            });
            if (iError != 0 || *pWritten == iCount || !WaitForRoom(device, deadline))
                return iError;
        }
    });
}

bool WaitForSerialInput(void* hPort, DWORD iLimit_ms) {
    const int iWait_ms = static_cast<int>(std::min<DWORD>(iLimit_ms, kLongestWait_ms));
    const std::shared_ptr<SerialDevice> pDevice = FindSerialDevice(hPort);
    if (pDevice == nullptr) {
        std::this_thread::sleep_for(milliseconds(std::min(iWait_ms, kNotOpenWait_ms)));
        return true;
    }
    if (pDevice->WaitFor(POLLIN, iWait_ms) != SerialDevice::Wake::HungUp)
        return true;
    pDevice->WaitFor(0, std::min(iWait_ms, kGoneWait_ms));
    return false;
}

// ClearCommError also asks for the pending output, which would be two more system calls in every exchange.
DWORD WaitingSerialInput(void* hPort) {
    int iWaiting = 0;
    WithPort(hPort, [&](SerialDevice& device) -> DWORD {
        return device.Operate([&](int fdTty) { return ioctl(fdTty, FIONREAD, &iWaiting); });
    });
    return static_cast<DWORD>(iWaiting);
}
