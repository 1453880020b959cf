// The serial port, with the names and records that the open sequence works on, over a tty.
//
// Each function does what Windows documents under its name; comments say only what differs here. A
// failing function leaves its reason in GetLastError, as a Windows error number: 2 no such port, 5 held
// by another program, 1314 no permission, 6 not an open port, 1 what the device cannot do, 31 any failure of
// the device. Any thread may use a handle; a handle that is closed while another thread uses it stays
// valid for that call, which then fails, and never reaches a file that took over its descriptor.
#pragma once

#include <cstdint>

#include "platform/types.h"

using BYTE = uint8_t;
using WORD = uint16_t;
using BOOL = int;
using HANDLE = void*;

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<intptr_t>(-1));

constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD PCF_INTTIMEOUTS = 0x80;
constexpr DWORD MAXDWORD = 0xFFFFFFFF;
constexpr DWORD DTR_CONTROL_DISABLE = 0;
constexpr DWORD RTS_CONTROL_ENABLE = 1;
constexpr DWORD SETRTS = 3;
constexpr DWORD CLRRTS = 4;
constexpr DWORD SETDTR = 5;
constexpr DWORD CLRDTR = 6;
constexpr DWORD PURGE_TXCLEAR = 4;
constexpr DWORD PURGE_RXCLEAR = 8;

/// The line settings. A tty takes BaudRate (any rate the kernel knows), ByteSize, Parity and StopBits; it
/// is always raw and without flow control, so the flags are kept as written but change nothing.
struct DCB {
    DWORD DCBlength;
    DWORD BaudRate;
    DWORD fBinary : 1;
    DWORD fParity : 1;
    DWORD fOutxCtsFlow : 1;
    DWORD fOutxDsrFlow : 1;
    DWORD fDtrControl : 2;
    DWORD fDsrSensitivity : 1;
    DWORD fTXContinueOnXoff : 1;
    DWORD fOutX : 1;
    DWORD fInX : 1;
    DWORD fErrorChar : 1;
    DWORD fNull : 1;
    DWORD fRtsControl : 2;
    DWORD fAbortOnError : 1;
    DWORD fDummy2 : 17;
    WORD wReserved;
    WORD XonLim;
    WORD XoffLim;
    BYTE ByteSize;
    BYTE Parity;
    BYTE StopBits;
    char XonChar;
    char XoffChar;
    char ErrorChar;
    char EofChar;
    char EvtChar;
    WORD wReserved1;
};

/// Only MAXDWORD, 0, 0 for reads (return at once with what is there) is known here; the write time-out
/// is WriteTotalTimeoutMultiplier * bytes + WriteTotalTimeoutConstant milliseconds.
struct COMMTIMEOUTS {
    DWORD ReadIntervalTimeout;
    DWORD ReadTotalTimeoutMultiplier;
    DWORD ReadTotalTimeoutConstant;
    DWORD WriteTotalTimeoutMultiplier;
    DWORD WriteTotalTimeoutConstant;
};

/// What the driver can do; only the fields that the library reads or writes.
struct COMMPROP {
    WORD wPacketLength;
    DWORD dwProvCapabilities;
};

/// Bytes waiting in the driver.
struct COMSTAT {
    DWORD cbInQue;
    DWORD cbOutQue;
};

/// Opens "\\.\COMn" exclusively (flock and TIOCEXCL, until CloseHandle); the other arguments are ignored.
/// COM1 to COM50 are dev/ttyUSB0 to 49, COM51 to COM100 dev/ttyACM0 to 49, below QUILLET_DEVICE_ROOT.
HANDLE CreateFileA(const char* sFileName, DWORD iAccess, DWORD iShareMode, void* pSecurity,
                   DWORD iDisposition, DWORD iFlags, HANDLE hTemplate);
/// The kernel's buffers cannot be chosen: the sizes are accepted and ignored.
BOOL SetupComm(HANDLE hPort, DWORD iInQueue, DWORD iOutQueue);
BOOL GetCommProperties(HANDLE hPort, COMMPROP* pProperties);
BOOL GetCommTimeouts(HANDLE hPort, COMMTIMEOUTS* pTimeouts);
BOOL SetCommTimeouts(HANDLE hPort, COMMTIMEOUTS* pTimeouts);
BOOL GetCommState(HANDLE hPort, DCB* pState);
BOOL SetCommState(HANDLE hPort, DCB* pState);
/// SETRTS, CLRRTS, SETDTR, CLRDTR. A pseudo-terminal has no such lines: fails with 1.
BOOL EscapeCommFunction(HANDLE hPort, DWORD iFunction);
BOOL PurgeComm(HANDLE hPort, DWORD iFlags);
/// pErrors may be null; it receives 0.
BOOL ClearCommError(HANDLE hPort, DWORD* pErrors, COMSTAT* pStat);
/// Never waits. Fails when the device is gone (a hung-up tty) as well as on a closed port.
BOOL ReadFile(HANDLE hPort, void* pBuffer, DWORD iCount, DWORD* pRead, void* pOverlapped);
/// Writes until done or until the write time-out has passed, and then tells a short count with success.
BOOL WriteFile(HANDLE hPort, const void* pData, DWORD iCount, DWORD* pWritten, void* pOverlapped);
/// Ends the exclusive use at once and wakes a thread that waits in WaitForSerialInput.
BOOL CloseHandle(HANDLE hPort);
/// The calling thread's last error; a function that succeeds sets it to 0.
DWORD GetLastError();
void SetLastError(DWORD iError);
