// The serial-port functions and records of Windows that the library uses, over a tty.
//
// Each function does what Windows documents under its name; comments describe only the differences. A failing
// function sets GetLastError to a Windows error number: 2 no such port, 5 held by another program, 1314 no
// permission, 6 not an open port, 1 not supported by the device, 31 any failure of the device. Any thread may
// use a handle. A handle closed while another thread uses it stays valid for that call, which then fails and
// never reaches another file that reuses the descriptor.
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

/// The line settings. A tty uses BaudRate (any rate the kernel supports), ByteSize, Parity and StopBits. It
/// is always raw and without flow control; the flags are stored but have no effect.
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

/// Reads always return at once with the available bytes (MAXDWORD, 0, 0); the write time-out is
/// WriteTotalTimeoutMultiplier * bytes + WriteTotalTimeoutConstant milliseconds.
struct COMMTIMEOUTS {
    DWORD ReadIntervalTimeout;
    DWORD ReadTotalTimeoutMultiplier;
    DWORD ReadTotalTimeoutConstant;
    DWORD WriteTotalTimeoutMultiplier;
    DWORD WriteTotalTimeoutConstant;
};

/// The driver's capabilities; only the fields that the library uses.
struct COMMPROP {
    WORD wPacketLength;
    DWORD dwProvCapabilities;
};

/// Bytes waiting in the driver; only the fields that the library uses.
struct COMSTAT {
    DWORD cbInQue;
    DWORD cbOutQue;
};

/// Opens "\\.\COMn" exclusively (flock and TIOCEXCL, until CloseHandle); the other arguments are ignored.
/// COM1 to COM50 are dev/ttyUSB0 to 49, COM51 to COM100 dev/ttyACM0 to 49, under QUILLET_DEVICE_ROOT.
HANDLE CreateFileA(const char* sFileName, DWORD iAccess, DWORD iShareMode, void* pSecurity,
                   DWORD iDisposition, DWORD iFlags, HANDLE hTemplate);
/// Ignores the sizes: the kernel's buffers cannot be changed.
BOOL SetupComm(HANDLE hPort, DWORD iInQueue, DWORD iOutQueue);
BOOL GetCommProperties(HANDLE hPort, COMMPROP* pProperties);
BOOL GetCommTimeouts(HANDLE hPort, COMMTIMEOUTS* pTimeouts);
BOOL SetCommTimeouts(HANDLE hPort, COMMTIMEOUTS* pTimeouts);
BOOL GetCommState(HANDLE hPort, DCB* pState);
BOOL SetCommState(HANDLE hPort, DCB* pState);
/// Supports SETRTS, CLRRTS, SETDTR and CLRDTR. Fails with 1 on a pseudo-terminal, which has no such lines.
BOOL EscapeCommFunction(HANDLE hPort, DWORD iFunction);
BOOL PurgeComm(HANDLE hPort, DWORD iFlags);
/// pErrors receives 0; it may be null.
BOOL ClearCommError(HANDLE hPort, DWORD* pErrors, COMSTAT* pStat);
/// Never blocks. Fails on a closed port, and when the device is gone (a hung-up tty).
BOOL ReadFile(HANDLE hPort, void* pBuffer, DWORD iCount, DWORD* pRead, void* pOverlapped);
/// A write time-out succeeds with a short count.
BOOL WriteFile(HANDLE hPort, const void* pData, DWORD iCount, DWORD* pWritten, void* pOverlapped);
/// Ends the exclusive use at once and wakes threads that wait in WaitForSerialInput.
BOOL CloseHandle(HANDLE hPort);
/// A function that succeeds sets the last error to 0.
DWORD GetLastError();
void SetLastError(DWORD iError);
