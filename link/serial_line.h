// The line of a connection over a COM port of this computer.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "link/comm_manager.h"
#include "link/event_dispatcher.h"
#include "link/transport.h"

/// SerialLine sends frames through a COM port and matches responses to requests by their first byte. It owns
/// the port, the receive thread and the delivery thread. Stop joins both threads.
///
/// A caller that waits for its response reads the port itself when nobody but the connection receives
/// packets, and no read delay is wanted. The response then reaches it without waking another thread, and it
/// stops waiting when the device is gone.
class SerialLine : public Transport, private SerialControls {
public:
    explicit SerialLine(int iComPort) : m_iComPort(iComPort) {}
    ~SerialLine() override;

    void Start(const LineOwner& owner) override;
    void Stop() override;
    bool Open(DWORD iServerTimeOut_ms) override;
    void Close() override;
    PortError LastError() const override;
    bool OpensOnDemand() const override { return true; }
    /// Packets that arrived before the request are discarded; later ones with an unexpected first byte are
    /// logged and discarded.
    bool Exchange(const LineRequest& request, LineResponse& response) override;
    bool SwitchToDiagMode() override;
    bool AddListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter) override;
    void RemoveListener(CQLibEvents_Listener* pListener) override;
    SerialControls* Serial() override { return this; }

private:
    bool Write(std::span<const unsigned char> packet, DWORD iTimeOut_ms, bool bForceStartFlag) override;
    bool ExchangeText(const LineRequest& request, QueueItem& reply) override;
    bool SetStartFlag(bool bStartFlag) override;
    int GetPacketMode() const override { return m_pLink->GetPacketMode(); }
    void SetPacketMode(int iPacketMode) override { m_pLink->SetPacketMode(iPacketMode); }
    void SetDTR(bool bHigh) override { m_pLink->SetDTR(bHigh); }
    void SetRTS(bool bHigh) override { m_pLink->SetRTS(bHigh); }
    void FlushRxBuffer() override { m_pLink->FlushRxBuffer(); }

    DataLogFileHandler& Log() { return m_owner->log; }
    bool WriteFrame(std::span<const unsigned char> packet, DWORD iTimeOut_ms, bool bForceStartFlag,
                    DWORD& iTaken_ms);
    void LogWritten(DWORD iTimeOut_ms, DWORD iTaken_ms);
    using Turn = std::optional<CallersTurn>; // empty: the receive thread reads the port
    bool WriteAndWait(const LineRequest& request, const unsigned char* piFirstByte, QueueItem& reply);
    bool WaitForReply(DWORD iTimeOut_ms, const unsigned char* piFirstByte, Turn& turn, QueueItem& reply);
    bool MayRead();
    void BeginReading(Turn& turn);
    void LeaveReading(Turn& turn); // to the receive thread
    bool ReadReply(DWORD iLimit_ms, QueueItem& reply, bool& bDevicePresent);

    const int m_iComPort;
    std::optional<LineOwner> m_owner; // set by Start
    CQLibEventDispatcher m_dispatcher;
    bool m_bDeliveryFailed = false;            // the last Open could not start its thread
    std::unique_ptr<CQLibCommManager> m_pLink; // set by Start
};

/// MakeLine makes the line of a connection on a COM port: a SerialLine, or what a test has substituted.
std::unique_ptr<Transport> MakeLine(int iComPort);

/// ReplaceLines sets the maker of later connections' lines (null: SerialLine). It lets tests and fuzzers
/// watch or replace the line. No other thread may make connections during the call.
using LineMaker = std::function<std::unique_ptr<Transport>(int iComPort)>;
void ReplaceLines(LineMaker maker);
