// The line of a connection through a port server.
#pragma once

#include <optional>

#include "link/transport.h"

class QpstServer;

/// ServerLine carries a connection's requests through a port server. It has no thread: packets that the phone
/// sends unasked arrive on a thread of the server's path. A request on a line that is not open goes to the
/// server as well, which refuses it.
class ServerLine : public Transport {
public:
    /// pServer is borrowed and must outlive the line; null: every operation fails.
    ServerLine(QpstServer* pServer, int iComPort) : m_pServer(pServer), m_iComPort(iComPort) {}
    ~ServerLine() override;

    void Start(const LineOwner& owner) override;
    void Stop() override;
    /// Open selects the port at the server and listens to its packets.
    bool Open(DWORD iServerTimeOut_ms) override;
    void Close() override;
    PortError LastError() const override { return PortError::None; }
    bool OpensOnDemand() const override { return false; }
    bool Exchange(const LineRequest& request, LineResponse& response) override;
    bool SwitchToDiagMode() override { return false; }
    bool AddListener(CQLibEvents_Listener*, CQLibEvents_Filter*) override { return false; }
    void RemoveListener(CQLibEvents_Listener*) override {}
    SerialControls* Serial() override { return nullptr; }

private:
    template <class Body>
    bool Reported(Body body) noexcept;

    QpstServer* const m_pServer;
    const int m_iComPort;
    std::optional<LineOwner> m_owner; // from Start on
    bool m_bIsOpen = false;
};
