// The COM port as a byte stream.
#pragma once

#include <atomic>

#include "platform/port_error.h"
#include "platform/types.h"
#include "system/serial.h"

class DataLogFileHandler;

/// CSerialPort opens one COM port with fixed line settings (no flow control, RTS high, DTR low) and transfers
/// bytes. It knows nothing of packets.
///
/// Threads: Receive, WaitForInput and InQueueCount belong to the thread whose turn it is to read
/// (ReaderTurn), everything else to the caller's. Close may be called during a call of the reading thread,
/// which then returns without data.
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

    /// Opens COM iPort (1 to 100) at 115200 baud, 8N1. On false the port is closed and ErrorCode identifies
    /// the step that failed. Any other number returns false and changes nothing.
    virtual bool Open(int iPort);
    /// Returns 1 while the port is open, else 0.
    virtual int IsOpen();
    /// Always true.
    virtual bool Close();
    /// SetBaudRate writes the line settings with this rate (0xFFFFFFFF: unchanged).
    virtual bool SetBaudRate(DWORD iRate);
    /// GetBaudRate returns the rate last read or written, without asking the driver. Always true.
    virtual bool GetBaudRate(DWORD* piRate);
    /// FlushPCBuffer discards the driver's received bytes.
    virtual bool FlushPCBuffer();
    /// SetLogHandler attaches the text log (null: none) and returns it.
    virtual DataLogFileHandler* SetLogHandler(DataLogFileHandler* pLogHandler);
    /// Send writes iCount bytes within 300 ms. Returns the number written: fewer when the device fails or its
    /// output queue is full, 0 when it took longer.
    virtual int Send(const unsigned char* pData, int iCount);
    /// Receive reads up to iCount waiting bytes without blocking. Returns their number.
    virtual int Receive(unsigned char* pBuffer, int iCount);
    /// SetDTR, SetRTS set a line (non-zero: high). They return a library code.
    virtual int SetDTR(int iHigh);
    virtual int SetRTS(int iHigh);

    /// Opens with the given line settings; iStopBits 0 means one.
    bool OpenDevice(int iPort, DWORD iBaudRate, unsigned char iParity, unsigned char iByteSize,
                    unsigned char iStopBits);
    /// One read or write by the driver. Returns the number of bytes, or a negative library code.
    int ReadSome(unsigned char* pBuffer, DWORD iCount);
    int WriteSome(const unsigned char* pData, DWORD iCount);
    /// Bytes waiting in the driver's input queue; 0 when unknown.
    int InQueueCount();
    /// Free bytes in the driver's output queue of 4096; 4096 when unknown.
    int OutQueueFree();
    /// MapPlatformError converts a system error number to a library code and stores the number.
    int MapPlatformError(int iPlatformError);

    /// WaitForInput returns when bytes may be available, when the port is closed, or after iLimit_ms. False
    /// when the device is gone, where the system reports that.
    bool WaitForInput(DWORD iLimit_ms);
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
