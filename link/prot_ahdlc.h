// The framing layer: sends frames through the port and reads it for the receive thread.
#pragma once

#include <mutex>

#include "link/frame.h"
#include "platform/types.h"

class CSerialPort;
class DataLogFileHandler;

/// A phone in AT data mode is asked this often to switch, and has so long for each answer.
constexpr int kDiagModeTries = 2;
constexpr DWORD kDiagModeTry_ms = 200;

/// CProtAHDLC frames packets for the phone, or passes bytes unchanged in raw mode. It owns neither port nor
/// log.
///
/// Threads: Receive belongs to the receive thread, everything else to the caller's. Whoever reads the port
/// holds ReaderLock: the receive thread for each pass, Data2DM while it waits for its answer.
class CProtAHDLC {
public:
    CProtAHDLC() = default;
    virtual ~CProtAHDLC();
    CProtAHDLC(const CProtAHDLC&) = delete;
    CProtAHDLC& operator=(const CProtAHDLC&) = delete;

    /// Data2DM switches a phone whose serial interface is in AT data mode into diagnostic mode. The mask
    /// chooses the rates to try: 0x01 19200, 0x04 115200 baud. True when the
    /// phone said OK; the port has its former rate in any case.
    virtual bool Data2DM(unsigned char iBaudRateMask);
    /// FlushPhoneBuffer sends a flag, which ends any partial frame that the phone may hold. Always true.
    virtual bool FlushPhoneBuffer();
    /// SetStartFlag: non-zero makes every frame begin with a flag. Returns the value before.
    virtual int SetStartFlag(unsigned char bStartFlag);
    /// SetRawMode: non-zero sends packets as they are.
    virtual void SetRawMode(int iMode);
    /// Send writes one packet of iSize bytes (below 4094) as a frame; iTimeout is only logged. True when
    /// every byte went out.
    virtual bool Send(const unsigned char* pPacket, DWORD iSize, DWORD iTimeout,
                      unsigned char bForceStartFlag);
    /// Receive takes up to *piCount waiting bytes, without waiting, and tells their number in *piCount; the
    /// rest of the wanted bytes is 0xFF. False when the read took longer than iLimit_ms.
    virtual bool Receive(unsigned char* pBuffer, DWORD* piCount, DWORD iLimit_ms);

    /// ReceiveWaiting is Receive without the filling, for callers that look at nothing but what was received.
    bool ReceiveWaiting(unsigned char* pBuffer, DWORD* piCount, DWORD iLimit_ms);

    /// SetPort attaches the port; false for null.
    bool SetPort(CSerialPort* pPort);
    /// SetLogHandler attaches the text log, to the port as well.
    void SetLogHandler(DataLogFileHandler* pLogHandler);

    std::mutex& ReaderLock() { return m_readerLock; }

private:
    void Log(unsigned int iCategory, const char* sText);
    bool WriteFrame(std::span<const unsigned char> frame);
    bool TryRate(DWORD iRate);
    bool AskForDiagMode();

    CSerialPort* m_pPort = nullptr;
    DataLogFileHandler* m_pLogHandler = nullptr;
    unsigned char m_bStartFlag = 0;
    int m_iRawMode = 0;
    std::mutex m_readerLock;
};
