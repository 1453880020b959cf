// Line settings, time-outs, capabilities and modem lines of an open serial port.
#include <sys/ioctl.h>

#include "platform/posix/line_settings.h"
#include "platform/posix/serial_handles.h"
#include "platform/posix/test_faults.h"

BOOL SetupComm(HANDLE hPort, DWORD, DWORD) {
    return WithPort(hPort, [](SerialDevice&) {
        return InjectedFaults().bSetupCommFails ? kErrorGeneralFailure : DWORD{0};
    });
}

BOOL GetCommProperties(HANDLE hPort, COMMPROP* pProperties) {
    return WithPort(hPort, [&](SerialDevice&) -> DWORD {
        pProperties->wPacketLength = sizeof(COMMPROP);
        pProperties->dwProvCapabilities = InjectedFaults().bNoIntervalTimeouts ? 0 : PCF_INTTIMEOUTS;
        return 0;
    });
}

BOOL GetCommTimeouts(HANDLE hPort, COMMTIMEOUTS* pTimeouts) {
    return WithPort(hPort, [&](SerialDevice& device) -> DWORD {
        *pTimeouts = device.GetSettings().timeouts;
        return 0;
    });
}

BOOL SetCommTimeouts(HANDLE hPort, COMMTIMEOUTS* pTimeouts) {
    return WithPort(hPort, [&](SerialDevice& device) -> DWORD {
        if (pTimeouts->ReadIntervalTimeout != MAXDWORD || pTimeouts->ReadTotalTimeoutMultiplier != 0 ||
            pTimeouts->ReadTotalTimeoutConstant != 0)
            return kErrorInvalidParameter;
        device.SetTimeouts(*pTimeouts);
        return 0;
    });
}

BOOL GetCommState(HANDLE hPort, DCB* pState) {
    return WithPort(hPort, [&](SerialDevice& device) -> DWORD {
        termios settings{};
        const DWORD iError = device.Operate([&](int fdTty) { return tcgetattr(fdTty, &settings); });
        if (iError != 0)
            return iError;
        *pState = device.GetSettings().state;
        TakeLineState(settings, *pState);
        return 0;
    });
}

BOOL SetCommState(HANDLE hPort, DCB* pState) {
    return WithPort(hPort, [&](SerialDevice& device) -> DWORD {
        if (InjectedFaults().bSetCommStateFails)
            return kErrorGeneralFailure;
        bool bKnown = true;
        const DWORD iError = device.Operate([&](int fdTty) {
            termios settings{};
            if (tcgetattr(fdTty, &settings) != 0)
                return -1;
            MakeRaw(settings);
            bKnown = PutLineState(*pState, settings);
            return bKnown ? ApplyLineState(fdTty, settings) : 0;
        });
        if (!bKnown)
            return kErrorInvalidParameter;
        if (iError == 0)
            device.SetState(*pState);
        return iError;
    });
}

BOOL EscapeCommFunction(HANDLE hPort, DWORD iFunction) {
    return WithPort(hPort, [&](SerialDevice& device) -> DWORD {
        if (iFunction < SETRTS || iFunction > CLRDTR)
            return kErrorInvalidParameter;
        const bool bRaise = iFunction == SETRTS || iFunction == SETDTR;
        const int iLine = iFunction == SETRTS || iFunction == CLRRTS ? TIOCM_RTS : TIOCM_DTR;
        return device.Operate([&](int fdTty) { return ioctl(fdTty, bRaise ? TIOCMBIS : TIOCMBIC, &iLine); });
    });
}
