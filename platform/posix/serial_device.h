// An open tty for any number of threads, one of which may close it while the others use it.
#pragma once

#include <atomic>
#include <cerrno>
#include <mutex>
#include <shared_mutex>

#include "platform/posix/descriptor.h"
#include "system/serial.h"

constexpr DWORD kErrorInvalidFunction = 1;
constexpr DWORD kErrorFileNotFound = 2;
constexpr DWORD kErrorAccessDenied = 5;
constexpr DWORD kErrorPrivilegeNotHeld = 1314;
constexpr DWORD kErrorInvalidHandle = 6;
constexpr DWORD kErrorNotEnoughMemory = 8;
constexpr DWORD kErrorGeneralFailure = 31;
constexpr DWORD kErrorInvalidParameter = 87;

/// DeviceError converts an errno from an open tty to an error number.
DWORD DeviceError(int iErrno);

/// OpenError converts an errno from opening or claiming a tty to an error number.
DWORD OpenError(int iErrno);

/// SerialDevice is an open tty. The handle table and the calls in progress own it together, and the last
/// owner closes the descriptor, so that its number cannot be reused for another file during a call. Any
/// thread may call any member function.
class SerialDevice {
public:
    /// How a wait ended.
    enum class Wake { Ready, HungUp, Closed, TimedOut };

    /// Takes ownership of the tty and of an eventfd that is raised when the port is closed.
    SerialDevice(Descriptor tty, Descriptor closed);
    ~SerialDevice();
    SerialDevice(const SerialDevice&) = delete;
    SerialDevice& operator=(const SerialDevice&) = delete;

    /// Claim gets exclusive use of the tty and makes it raw. Returns 0 or an error number. Called once,
    /// before other threads know the device.
    DWORD Claim();

    /// EndUse releases the tty for others to open, wakes every waiting thread and makes later operations
    /// fail. Output still in the driver gets a short time to drain, then is discarded, because a device that
    /// accepts nothing could hold the closing thread for as long as the driver waits.
    void EndUse();

    /// Operate calls `operation` with the tty's descriptor. The operation must not block; it returns a
    /// negative number with errno for failure. Returns 0 or an error number. After EndUse, when another
    /// process may own the tty, it returns kErrorInvalidHandle without calling `operation`.
    template <class Operation>
    DWORD Operate(Operation operation) {
        std::shared_lock lock(m_inUse);
        if (m_bEnded)
            return kErrorInvalidHandle;
        return operation(m_tty.Get()) < 0 ? DeviceError(errno) : 0;
    }

    /// WaitFor waits until the tty has one of the poll events `iEvents` (0: ignore the tty), until it is hung
    /// up with no bytes left to read, until EndUse, or for `iTimeout_ms`.
    Wake WaitFor(short iEvents, int iTimeout_ms);

    /// The settings that the tty itself does not store.
    struct Settings {
        DCB state;
        COMMTIMEOUTS timeouts;
    };
    Settings GetSettings();
    void SetState(const DCB& state);
    void SetTimeouts(const COMMTIMEOUTS& timeouts);

private:
    const Descriptor m_tty;
    const Descriptor m_closed;
    std::shared_mutex m_inUse; // shared by operations, exclusive in EndUse
    bool m_bClaimed = false;   // under m_inUse
    bool m_bEnded = false;     // under m_inUse
    std::mutex m_settingsLock;
    Settings m_settings; // under m_settingsLock
};
