// The serial link of a connection: the port, the framing and the receive thread.
#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

#include "link/event_dispatcher.h"
#include "link/frame_decoder.h"
#include "link/prot_ahdlc.h"
#include "link/serial_port.h"
#include "platform/timer_resolution.h"
#include "platform/types.h"

/// CQLibCommManager opens a COM port, reads it and hands every decoded packet to the dispatcher. The
/// dispatcher and the text log must outlive it.
///
/// Threads: all operations belong to the caller's thread. A caller that waits for its response may read the
/// port itself (Reader, ReadFor); at all other times the receive thread reads it. That thread ends soon after
/// Close, which joins it; if it takes too long, the next Open or the destructor joins it.
class CQLibCommManager {
public:
    CQLibCommManager(CQLibEventDispatcher& dispatcher, DataLogFileHandler& log);
    ~CQLibCommManager();
    CQLibCommManager(const CQLibCommManager&) = delete;
    CQLibCommManager& operator=(const CQLibCommManager&) = delete;

    /// Open opens COM iPort and starts the receive thread; true also when that is running already. False when
    /// the port cannot be opened or the thread cannot be started.
    bool Open(int iPort);
    /// OpenError returns why the last Open failed; None when it did not.
    PortError OpenError() const { return m_bThreadFailed ? PortError::Other : m_port.OpenError(); }
    /// Close closes the port and ends the receive thread. False when that takes more than 1000 ms.
    bool Close();
    /// JoinReceiver waits for a receive thread that Close did not wait for.
    void JoinReceiver();

    /// The operations of CProtAHDLC.
    bool Send(const unsigned char* pPacket, DWORD iSize, DWORD iTimeout, bool bForceStartFlag);
    bool Data2DM(unsigned char iBaudRateMask);
    bool SetStartFlag(bool bStartFlag);

    /// The packet mode: 0 framed, otherwise raw.
    void SetPacketMode(int iPacketMode);
    int GetPacketMode() const { return m_iPacketMode; }
    /// SetRawReplyPending sets whether replies in raw mode are cut after "OK" and "ERROR".
    void SetRawReplyPending(bool bPending) { m_bRawReplyPending = bPending; }
    /// FlushRxBuffer discards the incomplete packet before decoding the next bytes.
    void FlushRxBuffer() { m_bFlushRequest = true; }
    /// Reader is the turn that ReadFor requires.
    ReaderTurn& Reader() { return m_framing.Reader(); }
    /// IsPortOpen returns whether the port is open now; another thread may close it at any time.
    bool IsPortOpen() { return m_port.IsOpen() != 0; }
    /// ReadFor waits at most iLimit_ms for input (0: not at all), reads what has arrived and hands its
    /// packets to the dispatcher. It may return early. False when the device is gone, where the system
    /// reports that.
    bool ReadFor(DWORD iLimit_ms);
    void SetDTR(bool bHigh) { m_port.SetDTR(bHigh ? 1 : 0); }
    void SetRTS(bool bHigh) { m_port.SetRTS(bHigh ? 1 : 0); }

private:
    void ReceiveLoop();
    void ReceivePass();
    ReceiveMode CurrentReceiveMode() const;

    static constexpr size_t kReadSize = 40960;

    CQLibEventDispatcher& m_dispatcher;
    DataLogFileHandler& m_log;
    CSerialPort m_port;
    CProtAHDLC m_framing;
    std::optional<FineTimer> m_fineTimer; // while the port is open

    // Written by the caller's thread; read in the next pass.
    std::atomic<bool> m_bFlushRequest{false};
    std::atomic<bool> m_bRawReplyPending{false};
    std::atomic<int> m_iPacketMode{0};

    // Used by the thread whose turn it is to read.
    std::array<unsigned char, kReadSize> m_aReadBuffer;
    std::optional<FrameDecoder> m_decoder;

    bool m_bThreadRunning = false;
    bool m_bThreadFailed = false; // the last Open could not start it
    std::mutex m_endLock;
    std::condition_variable m_ended;
    bool m_bThreadEnded = true; // under m_endLock
    std::thread m_thread;
};
