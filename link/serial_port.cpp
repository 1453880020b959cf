#include "link/serial_port.h"

#include <algorithm>
#include <cstdio>
#include <thread>

#include "link/clock.h"
#include "link/text_log.h"
#include "platform/serial_wait.h"

namespace {

constexpr int kLastPortNumber = 100;
constexpr DWORD kBufferSize = 4096;
constexpr DWORD kDrainSize = 1000;
constexpr int kWriteChunk = 2000;
constexpr int kWriteAttempts = 4;
constexpr Milliseconds kSendLimit_ms(300);
constexpr DWORD kKeepBaudRate = 0xFFFFFFFF;

enum : int {
    kErrorLineState = -191,
    kErrorNoTimeouts = -192,
    kErrorBufferSizes = -193,
    kErrorOpen = -194,
    kErrorMemory = -195,
    kErrorAccess = -197,
    kErrorNoDevice = -198,
    kErrorOther = -200,
};

PortError OpenErrorOf(DWORD iPlatformError) {
    switch (iPlatformError) {
        case 2: // file not found
        case 3: // path not found
            return PortError::NoSuchPort;
        case 5:  // access denied: so systems refuse a port that is open already
        case 32: // sharing violation
            return PortError::Held;
        case 1314: // privilege not held
            return PortError::NoPermission;
        default:
            return PortError::Other;
    }
}

} // namespace

CSerialPort::~CSerialPort() {
    CSerialPort::Close();
}

bool CSerialPort::Open(int iPort) {
    m_eOpenError = PortError::Other;
    return iPort >= 1 && iPort <= kLastPortNumber && OpenDevice(iPort, 115200, 0, 8, 0);
}

int CSerialPort::IsOpen() {
    return m_bIsOpen;
}

bool CSerialPort::Close() {
    if (m_bIsOpen.exchange(0) != 0)
        CloseHandle(m_hPort.exchange(INVALID_HANDLE_VALUE));
    return true;
}

bool CSerialPort::OpenDevice(int iPort, DWORD iBaudRate, unsigned char iParity, unsigned char iByteSize,
                             unsigned char iStopBits) {
    CSerialPort::Close();
    m_iPortNumber = iPort;
    m_iErrorCode = 0;
    m_eOpenError = PortError::None;
    char sDevice[32];
    std::snprintf(sDevice, sizeof sDevice, "\\\\.\\COM%d", iPort);
    m_hPort = CreateFileA(sDevice, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (m_hPort == INVALID_HANDLE_VALUE)
        return Fail(kErrorOpen, OpenErrorOf(GetLastError()));
    if (!Configure(iBaudRate, iParity, iByteSize, iStopBits))
        return false;
    SetLine(SETRTS);
    SetLine(CLRDTR);
    PurgeComm(m_hPort, PURGE_TXCLEAR | PURGE_RXCLEAR);
    m_bIsOpen = 1;
    unsigned char aDrained[kDrainSize];
    ReadSome(aDrained, sizeof aDrained);
    return m_iErrorCode == 0;
}

bool CSerialPort::Configure(DWORD iBaudRate, unsigned char iParity, unsigned char iByteSize,
                            unsigned char iStopBits) {
    if (!SetupComm(m_hPort, kBufferSize, kBufferSize))
        return Fail(kErrorBufferSizes);
    m_capabilities = {};
    m_capabilities.wPacketLength = 64;
    if (!GetCommProperties(m_hPort, &m_capabilities) ||
        (m_capabilities.dwProvCapabilities & PCF_INTTIMEOUTS) == 0)
        return Fail(kErrorNoTimeouts);
    SetTimeouts();
    return SetLineState(iBaudRate, iParity, iByteSize, iStopBits) || Fail(kErrorLineState);
}

void CSerialPort::SetTimeouts() {
    COMMTIMEOUTS timeouts{};
    GetCommTimeouts(m_hPort, &timeouts);
    // Reads return at once with the waiting bytes; a write of n bytes takes at most n + 50 ms.
    timeouts.ReadIntervalTimeout = MAXDWORD;
    timeouts.ReadTotalTimeoutMultiplier = 0;
    timeouts.ReadTotalTimeoutConstant = 0;
    timeouts.WriteTotalTimeoutMultiplier = 1;
    timeouts.WriteTotalTimeoutConstant = 50;
    SetCommTimeouts(m_hPort, &timeouts);
}

bool CSerialPort::SetLineState(DWORD iBaudRate, unsigned char iParity, unsigned char iByteSize,
                               unsigned char iStopBits) {
    m_lineState = {};
    m_lineState.DCBlength = sizeof m_lineState;
    GetCommState(m_hPort, &m_lineState);
    m_lineState.BaudRate = iBaudRate;
    m_lineState.ByteSize = iByteSize;
    m_lineState.Parity = iParity;
    m_lineState.StopBits = iStopBits;
    m_lineState.XonLim = 0;
    m_lineState.XoffLim = 0;
    m_lineState.EofChar = 0;
    m_lineState.fBinary = 1;
    m_lineState.fParity = 1;
    m_lineState.fOutxCtsFlow = 0;
    m_lineState.fOutxDsrFlow = 0;
    m_lineState.fDtrControl = DTR_CONTROL_DISABLE;
    m_lineState.fDsrSensitivity = 0;
    m_lineState.fTXContinueOnXoff = 1;
    m_lineState.fOutX = 0;
    m_lineState.fInX = 0;
    m_lineState.fErrorChar = 0;
    m_lineState.fNull = 0;
    m_lineState.fRtsControl = RTS_CONTROL_ENABLE;
    m_lineState.fAbortOnError = 0;
    return SetCommState(m_hPort, &m_lineState) != 0;
}

bool CSerialPort::Fail(int iErrorCode, PortError eOpenError) {
    m_iErrorCode = iErrorCode;
    m_eOpenError = eOpenError;
    if (m_hPort != INVALID_HANDLE_VALUE)
        CloseHandle(m_hPort.exchange(INVALID_HANDLE_VALUE));
    return false;
}

bool CSerialPort::SetBaudRate(DWORD iRate) {
    SetLastError(0);
    if (GetCommState(m_hPort, &m_lineState)) {
        if (iRate != kKeepBaudRate)
            m_lineState.BaudRate = iRate;
        SetCommState(m_hPort, &m_lineState);
    }
    m_iErrorCode = MapPlatformError(static_cast<int>(GetLastError()));
    return m_iErrorCode == 0;
}

bool CSerialPort::GetBaudRate(DWORD* piRate) {
    *piRate = m_lineState.BaudRate;
    return true;
}

bool CSerialPort::FlushPCBuffer() {
    if (DataLogFileHandler* pLog = m_pLogHandler; pLog != nullptr)
        pLog->LogMessage(LOG_FN_DEV, "CSerialPort::FlushPCBuffer()");
    return PurgeComm(m_hPort, PURGE_RXCLEAR) != 0;
}

DataLogFileHandler* CSerialPort::SetLogHandler(DataLogFileHandler* pLogHandler) {
    m_pLogHandler = pLogHandler;
    return pLogHandler;
}

int CSerialPort::Send(const unsigned char* pData, int iCount) {
    DataLogFileHandler* const pLog = m_pLogHandler;
    if (pLog != nullptr)
        pLog->LogMessage(LOG_FN_DEV, "CSerialPort::Send(nbyte=%d)", iCount);
    const int iSent = SendAll(pData, iCount);
    if (pLog != nullptr)
        pLog->LogMessage(LOG_RET_DEV, "CSerialPort::Send(bytes_sent=%d) ... OK", iSent);
    return iSent;
}

int CSerialPort::SendAll(const unsigned char* pData, int iCount) {
    const auto deadline = Clock::now() + kSendLimit_ms;
    int iSent = 0;
    int iFailures = 0;
    do {
        const int iWritten =
            WriteSome(pData + iSent, static_cast<DWORD>(std::min(iCount - iSent, kWriteChunk)));
        if (iWritten > 0)
            iSent += iWritten;
        if (Clock::now() > deadline)
            return 0;
        // A removed device fails every time: give up after a few attempts.
        iFailures = iWritten < 0 ? iFailures + 1 : 0;
        if (iFailures == kWriteAttempts)
            break;
        if (iWritten <= 0)
            std::this_thread::sleep_for(Milliseconds(1));
    } while (iSent < iCount && OutQueueFree() != 0);
    return iSent;
}

int CSerialPort::Receive(unsigned char* pBuffer, int iCount) {
    DataLogFileHandler* const pLog = m_pLogHandler;
    if (pLog != nullptr)
        pLog->LogMessage(LOG_FN_DEV, "CSerialPort::Receive(nbyte=%d)", iCount);
    int iReceived = 0;
    do {
        const int iRead = ReadSome(pBuffer + iReceived, static_cast<DWORD>(iCount - iReceived));
        if (iRead < 0)
            break;
        iReceived += iRead;
    } while (iReceived < iCount && InQueueCount() > 0);
    if (pLog != nullptr)
        pLog->LogMessage(LOG_RET_DEV, "CSerialPort::Receive(wRec=%d) ... OK", iReceived);
    return iReceived;
}

int CSerialPort::SetDTR(int iHigh) {
    return SetLine(iHigh != 0 ? SETDTR : CLRDTR);
}

int CSerialPort::SetRTS(int iHigh) {
    return SetLine(iHigh != 0 ? SETRTS : CLRRTS);
}

int CSerialPort::SetLine(DWORD iFunction) {
    SetLastError(0);
    EscapeCommFunction(m_hPort, iFunction);
    return MapPlatformError(static_cast<int>(GetLastError()));
}

int CSerialPort::ReadSome(unsigned char* pBuffer, DWORD iCount) {
    DWORD iRead = 0;
    if (!ReadFile(m_hPort, pBuffer, iCount, &iRead, nullptr))
        return MapPlatformError(static_cast<int>(GetLastError()));
    return static_cast<int>(iRead);
}

int CSerialPort::WriteSome(const unsigned char* pData, DWORD iCount) {
    DWORD iWritten = 0;
    if (!WriteFile(m_hPort, pData, iCount, &iWritten, nullptr))
        return MapPlatformError(static_cast<int>(GetLastError()));
    return static_cast<int>(iWritten);
}

int CSerialPort::InQueueCount() {
    return static_cast<int>(WaitingSerialInput(m_hPort));
}

int CSerialPort::OutQueueFree() {
    COMSTAT stat{};
    DWORD iErrors = 0;
    if (!ClearCommError(m_hPort, &iErrors, &stat))
        return static_cast<int>(kBufferSize);
    return std::max(0, static_cast<int>(kBufferSize) - static_cast<int>(stat.cbOutQue));
}

int CSerialPort::MapPlatformError(int iPlatformError) {
    m_iLastPlatformError = iPlatformError;
    switch (iPlatformError) {
        case 0:
            return 0;
        case 1:    // invalid function
        case 2:    // file not found
        case 3:    // path not found
        case 1118: // no serial device
            return kErrorNoDevice;
        case 5:
            return kErrorAccess;
        case 8:  // not enough memory
        case 14: // out of memory
            return kErrorMemory;
        default:
            return kErrorOther;
    }
}

bool CSerialPort::WaitForInput(DWORD iLimit_ms) {
    return WaitForSerialInput(m_hPort, iLimit_ms);
}
