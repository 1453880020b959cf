// An open tty for any number of threads, one of which may close it while the others use it.
#include "platform/posix/serial_device.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>

#include <chrono>
#include <cstdint>
#include <thread>

#include "platform/posix/line_settings.h"

namespace {

constexpr int kDrainSteps = 20;
constexpr std::chrono::milliseconds kDrainStep{5};

// Reads return at once; writes have the time limit that CSerialPort sets anyway.
constexpr COMMTIMEOUTS kInitialTimeouts = {MAXDWORD, 0, 0, 1, 50};

void DrainBriefly(int fdTty) {
    for (int iStep = 0; iStep < kDrainSteps; ++iStep) {
        int iPending = 0;
        if (ioctl(fdTty, TIOCOUTQ, &iPending) != 0 || iPending == 0)
            return;
        std::this_thread::sleep_for(kDrainStep);
    }
    tcflush(fdTty, TCOFLUSH);
}

bool HasInput(int fdTty) {
    int iPending = 0;
    return ioctl(fdTty, FIONREAD, &iPending) == 0 && iPending > 0;
}

} // namespace

DWORD DeviceError(int iErrno) {
    switch (iErrno) {
        case EBADF:
            return kErrorInvalidHandle;
        case ENOTTY:
        case EINVAL:
            return kErrorInvalidFunction;
        case ENOMEM:
            return kErrorNotEnoughMemory;
        default:
            return kErrorGeneralFailure;
    }
}

DWORD OpenError(int iErrno) {
    switch (iErrno) {
        case ENOENT:
        case ENOTDIR:
        case ENXIO:
        case ENODEV:
        case ENOTTY:
            return kErrorFileNotFound;
        case EACCES:
        case EPERM:
            return kErrorPrivilegeNotHeld;
        case EBUSY:
        case EWOULDBLOCK:
            return kErrorAccessDenied;
        case ENOMEM:
            return kErrorNotEnoughMemory;
        default:
            return kErrorGeneralFailure;
    }
}

SerialDevice::SerialDevice(Descriptor tty, Descriptor closed)
    : m_tty(std::move(tty)), m_closed(std::move(closed)), m_settings{} {
    m_settings.state.DCBlength = sizeof(DCB);
    m_settings.timeouts = kInitialTimeouts;
}

SerialDevice::~SerialDevice() {
    EndUse();
}

DWORD SerialDevice::Claim() {
    const int fdTty = m_tty.Get();
    if (flock(fdTty, LOCK_EX | LOCK_NB) != 0)
        return OpenError(errno);
    m_bClaimed = true;
    termios settings{};
    if (ioctl(fdTty, TIOCEXCL) != 0 || tcgetattr(fdTty, &settings) != 0)
        return OpenError(errno);
    MakeRaw(settings);
    return ApplyLineState(fdTty, settings) == 0 ? 0 : OpenError(errno);
}

void SerialDevice::EndUse() {
    const uint64_t iRaise = 1;
    [[maybe_unused]] const ssize_t iWritten = write(m_closed.Get(), &iRaise, sizeof(iRaise));
    std::unique_lock lock(m_inUse);
    if (m_bEnded)
        return;
    m_bEnded = true;
    if (!m_bClaimed)
        return;
    DrainBriefly(m_tty.Get());
    // Unlock last: the next owner of the lock sets TIOCEXCL again.
    ioctl(m_tty.Get(), TIOCNXCL);
    flock(m_tty.Get(), LOCK_UN);
}

SerialDevice::Wake SerialDevice::WaitFor(short iEvents, int iTimeout_ms) {
    // poll ignores a negative descriptor, so that a hang-up does not end a wait for the close alone.
    pollfd aPolled[] = {{iEvents != 0 ? m_tty.Get() : -1, iEvents, 0}, {m_closed.Get(), POLLIN, 0}};
    const int iCount = poll(aPolled, std::size(aPolled), iTimeout_ms);
    if (iCount > 0 && aPolled[1].revents != 0)
        return Wake::Closed;
    if (iCount <= 0)
        return Wake::TimedOut;
    if ((aPolled[0].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0 && !HasInput(m_tty.Get()))
        return Wake::HungUp;
    return Wake::Ready;
}

SerialDevice::Settings SerialDevice::GetSettings() {
    const std::lock_guard lock(m_settingsLock);
    return m_settings;
}

void SerialDevice::SetState(const DCB& state) {
    const std::lock_guard lock(m_settingsLock);
    m_settings.state = state;
}

void SerialDevice::SetTimeouts(const COMMTIMEOUTS& timeouts) {
    const std::lock_guard lock(m_settingsLock);
    m_settings.timeouts = timeouts;
}
