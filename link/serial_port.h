// The COM port as a plain byte stream.
#pragma once

#include <atomic>

#include "platform/port_error.h"
#include "platform/types.h"
#include "system/serial.h"

class DataLogFileHandler;

/// CSerialPort opens one COM port with fixed line settings (no flow control, RTS high, DTR low) and moves
/// bytes. It knows nothing of packets.
///
/// Threads: the receive thread calls Receive and WaitForInput, the caller's thread everything else. Close
/// may be called while the receive thread is inside: its calls then end and bring nothing.
///
/// Errors: library codes, 0 or negative: -191 line settings refused, -192 no interval time-outs, -193 buffer
/// sizes refused, -194 cannot be opened, -195 out of memory, -197 access denied, -198 no such device, -200
/// anything else.
class CSerialPort {
public:
    CSerialPort() = default;
    virtual ~CSerialPort();
    CSerialPort(const CSerialPort&) = delete;
    CSerialPort& operator=(const CSerialPort&) = delete;

    /// Opens COM iPort (1 to 100; another number does nothing) at 115200 baud, 8N1. On false the port is
    /// closed and ErrorCode tells the step that failed.
    virtual bool Open(int iPort);
    /// 1 while the port is open.
    virtual int IsOpen();
    /// Always true.
    virtual bool Close();
    /// SetBaudRate writes the line settings with this rate (0xFFFFFFFF: as they are).
    virtual bool SetBaudRate(DWORD iRate);
    /// GetBaudRate tells the rate as last read or written; the driver is not asked. Always true.
    virtual bool GetBaudRate(DWORD* piRate);
    /// FlushPCBuffer discards what the driver has received.
    virtual bool FlushPCBuffer();
    /// SetLogHandler attaches the text log (null: none) and returns it.
    virtual DataLogFileHandler* SetLogHandler(DataLogFileHandler* pLogHandler);
    /// Send writes iCount bytes within 300 ms. Returns the bytes written: fewer when the device fails, 0 when
    /// it took longer.
    virtual int Send(const unsigned char* pData, int iCount);
    /// Receive takes up to iCount waiting bytes and never waits. Returns their number.
    virtual int Receive(unsigned char* pBuffer, int iCount);
    /// SetDTR, SetRTS set a line (non-zero: high). They return a library code.
    virtual int SetDTR(int iHigh);
    virtual int SetRTS(int iHigh);

    /// Opens with given line settings; iStopBits 0 means one.
    bool OpenDevice(int iPort, DWORD iBaudRate, unsigned char iParity, unsigned char iByteSize,
                    unsigned char iStopBits);
    /// One read or write of the driver: bytes moved, or a negative library code.
    int ReadSome(unsigned char* pBuffer, DWORD iCount);
    int WriteSome(const unsigned char* pData, DWORD iCount);
    /// Bytes waiting in the driver's input queue; 0 when it cannot tell.
    int InQueueCount();
    /// Room in the driver's output queue of 4096 bytes; 4096 when it cannot tell.
    int OutQueueFree();
    /// MapPlatformError turns a system error number into a library code and keeps the number.
    int MapPlatformError(int iPlatformError);

    /// WaitForInput returns when bytes may be there, when the port was closed, or after iLimit_ms.
    void WaitForInput(DWORD iLimit_ms);
    /// The library code of the last open or baud-rate change.
    int ErrorCode() const { return m_iErrorCode; }
    /// OpenError says why the last Open failed; None when it did not.
    PortError OpenError() const { return m_eOpenError; }

private:
    bool Configure(DWORD iBaudRate, unsigned char iParity, unsigned char iByteSize, unsigned char iStopBits);
    void SetTimeouts();
    bool SetLineState(DWORD iBaudRate, unsigned char iParity, unsigned char iByteSize,
                      unsigned char iStopBits);
    bool Fail(int iErrorCode, PortError eOpenError = PortError::Other);
    int SendAll(const unsigned char* pData, int iCount);
    int SetLine(DWORD iFunction);

    std::atomic<HANDLE> m_hPort{INVALID_HANDLE_VALUE};
    std::atomic<int> m_bIsOpen{0};
    std::atomic<int> m_iLastPlatformError{0};
    std::atomic<DataLogFileHandler*> m_pLogHandler{nullptr};
    DCB m_lineState{};
    COMMPROP m_capabilities{};
    int m_iPortNumber = 0;
    int m_iErrorCode = 0;
    PortError m_eOpenError = PortError::None;
};
