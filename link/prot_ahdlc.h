// The framing layer: sends frames through the port and reads the port for the receive thread.
#pragma once

#include "link/frame.h"
#include "link/reader_turn.h"
#include "platform/types.h"

class CSerialPort;
class DataLogFileHandler;

/// Data2DM asks a phone this many times and waits this long for each response.
constexpr int kDiagModeTries = 2;
constexpr DWORD kDiagModeTry_ms = 200;

/// CProtAHDLC frames packets for the phone, or passes bytes unchanged in raw mode. It owns neither the port
/// nor the log.
///
/// Threads: Receive belongs to the thread whose turn it is to read the port, everything else to the caller's.
/// Data2DM takes the turn while it waits for a response.
class CProtAHDLC {
public:
    CProtAHDLC() = default;
    virtual ~CProtAHDLC();
    CProtAHDLC(const CProtAHDLC&) = delete;
    CProtAHDLC& operator=(const CProtAHDLC&) = delete;

    /// Data2DM switches a phone from AT data mode to diagnostic mode. The mask selects the rates to try: 0x01
    /// 19200, 0x04 115200 baud. True when the phone replied OK. The port's previous rate is restored in any
    /// case.
    virtual bool Data2DM(unsigned char iBaudRateMask);
    /// FlushPhoneBuffer sends a flag, which ends any partial frame in the phone. Always true.
    virtual bool FlushPhoneBuffer();
    /// SetStartFlag: non-zero puts a flag in front of every frame. Returns the previous value.
    virtual int SetStartFlag(unsigned char bStartFlag);
    /// SetRawMode: non-zero sends packets without framing.
    virtual void SetRawMode(int iMode);
    /// Send writes one packet of iSize bytes (below 4094) as a frame; iTimeout is only logged. True when
    /// every byte was written.
    virtual bool Send(const unsigned char* pPacket, DWORD iSize, DWORD iTimeout,
                      unsigned char bForceStartFlag);
    /// Receive reads up to *piCount waiting bytes without blocking, stores their number in *piCount and fills
    /// the rest of the buffer with 0xFF. False when the read took longer than iLimit_ms.
    virtual bool Receive(unsigned char* pBuffer, DWORD* piCount, DWORD iLimit_ms);

    /// ReceiveWaiting is Receive without the filling.
    bool ReceiveWaiting(unsigned char* pBuffer, DWORD* piCount, DWORD iLimit_ms);

    /// SetPort attaches the port; false for null.
    bool SetPort(CSerialPort* pPort);
    /// SetLogHandler attaches the text log, also to the port.
    void SetLogHandler(DataLogFileHandler* pLogHandler);

    ReaderTurn& Reader() { return m_reader; }

private:
    void Log(unsigned int iCategory, const char* sText);
    bool WriteFrame(std::span<const unsigned char> frame);
    bool TryRate(DWORD iRate);
    bool AskForDiagMode();

    CSerialPort* m_pPort = nullptr;
    DataLogFileHandler* m_pLogHandler = nullptr;
    unsigned char m_bStartFlag = 0;
    int m_iRawMode = 0;
    ReaderTurn m_reader;
};
