#include "portserver/server_line.h"

#include <exception>

#include "link/as_int.h"
#include "link/clock.h"
#include "link/event_listener.h"
#include "link/text_log.h"
#include "portserver/qpst_server.h"

ServerLine::~ServerLine() {
    ServerLine::Stop();
}

void ServerLine::Start(const LineOwner& owner) {
    m_owner.emplace(owner);
}

void ServerLine::Stop() {
    ServerLine::Close();
}

/// Runs an operation of the server. If it throws, logs the reason and returns false.
template <class Body>
bool ServerLine::Reported(Body body) noexcept {
    try {
        body();
        return true;
    } catch (const std::exception& error) {
        m_owner->log.LogMessage(LOG_ERR, "%s", error.what());
    } catch (...) {
        m_owner->log.LogMessage(LOG_ERR, "Unknown exception thrown.");
    }
    return false;
}

bool ServerLine::Open(DWORD iServerTimeOut_ms) {
    if (m_pServer == nullptr || m_bIsOpen)
        return m_bIsOpen;
    m_bIsOpen = Reported([&] {
        m_pServer->connect(static_cast<unsigned short>(m_iComPort), iServerTimeOut_ms);
        m_pServer->addEventListener(&m_owner->listener);
    });
    return m_bIsOpen;
}

void ServerLine::Close() {
    if (m_pServer != nullptr && m_owner)
        m_pServer->removeEventListener(&m_owner->listener);
    m_bIsOpen = false;
}

bool ServerLine::Exchange(const LineRequest& request, LineResponse& response) {
    if (m_pServer == nullptr)
        return false;
    DataLogFileHandler& log = m_owner->log;
    log.LogHex(LOG_IO, request.bytes.data(), static_cast<int>(request.bytes.size()), "SEND: ");
    const DWORD iStart_ms = TickCount_ms();
    QueueItem& item = response.item;
    item.length = sizeof item.data;
    const bool bAnswered = Reported([&] {
        m_pServer->sendSync(static_cast<unsigned short>(request.bytes.size()), request.bytes.data(),
                            &item.length, item.data, request.iTimeOut_ms);
        log.LogHex(LOG_IO, item.data, item.length, "REC: ");
    });
    log.LogMessage(LOG_IO, "STACK TIME (ms):\t%d", AsInt(TickCount_ms() - iStart_ms));
    // The server also delivers responses to its listeners: discard the copy if it has arrived.
    QueueItem copy;
    m_owner->responses.Pop(&copy);
    if (!bAnswered)
        return false;
    const int iReceived = item.length > 0 ? item.data[0] : -1;
    if (iReceived != request.iExpectedCode) {
        log.LogMessage(LOG_IO, "SEND SYNC Failed: expected %d recreived %d", request.iExpectedCode,
                       iReceived);
        return false;
    }
    response.iLength = item.length;
    return true;
}
