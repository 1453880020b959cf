// An open tty that any number of threads may use while one of them closes it.
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

/// DeviceError is the error number for an errno that an open tty gave.
DWORD DeviceError(int iErrno);

/// OpenError is the error number for an errno that opening or claiming a tty gave.
DWORD OpenError(int iErrno);

/// SerialDevice is an open tty. The handle table and every call in progress own it together; the last of
/// them closes the descriptor, so that its number cannot come to mean another file under a running call.
/// Any thread may call any member function.
class SerialDevice {
public:
    /// What a wait ended with.
    enum class Wake { Ready, HungUp, Closed, TimedOut };

    /// Takes over both descriptors: the tty, and an eventfd that is raised when the port is closed.
    SerialDevice(Descriptor tty, Descriptor closed);
    ~SerialDevice();
    SerialDevice(const SerialDevice&) = delete;
    SerialDevice& operator=(const SerialDevice&) = delete;

    /// Claim takes the tty for this owner alone and makes it raw. Returns 0 or an error number. Called once,
    /// before other threads know the device.
    DWORD Claim();

    /// EndUse gives the tty back for others to open, wakes every waiting thread and makes later operations
    /// fail. Output that is still in the driver gets a short time to leave, then is discarded: a device that
    /// takes nothing would otherwise hold the closing thread for as long as the driver likes.
    void EndUse();

    /// Operate calls `operation` with the tty's descriptor. The operation must not wait; it returns a
    /// negative number with errno for failure. Returns 0 or an error number, kErrorInvalidHandle after
    /// EndUse: nothing is read or written once the tty may belong to somebody else.
    template <class Operation>
    DWORD Operate(Operation operation) {
        std::shared_lock lock(m_inUse);
        if (m_bEnded)
            return kErrorInvalidHandle;
        return operation(m_tty.Get()) < 0 ? DeviceError(errno) : 0;
    }

    /// WaitFor waits until the tty has one of the poll events `iEvents` (0: none of it), until it is hung up
    /// without having bytes to read, until EndUse, or for `iTimeout_ms`.
    Wake WaitFor(short iEvents, int iTimeout_ms);

    /// The settings that the tty does not hold itself.
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
    std::shared_mutex m_inUse; // shared by operations, taken alone by EndUse
    bool m_bClaimed = false;   // under m_inUse
    bool m_bEnded = false;     // under m_inUse
    std::mutex m_settingsLock;
    Settings m_settings; // under m_settingsLock
};
