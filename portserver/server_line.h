// The line of a connection through a port server.
#pragma once

#include <optional>

#include "link/transport.h"

class QpstServer;

/// ServerLine sends a connection's requests through a port server. It has no thread: unsolicited packets
/// arrive on a thread of the server. Requests on a closed line also go to the server, which refuses them.
class ServerLine : public Transport {
public:
    /// pServer is borrowed and must outlive the line; null: every operation fails.
    ServerLine(QpstServer* pServer, int iComPort) : m_pServer(pServer), m_iComPort(iComPort) {}
    ~ServerLine() override;

    void Start(const LineOwner& owner) override;
    void Stop() override;
    /// Open selects the port on the server and registers for its packets.
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
    std::optional<LineOwner> m_owner; // set by Start
    bool m_bIsOpen = false;
};
