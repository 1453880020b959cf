// What a connection does differently when a port server carries its requests.
#include <algorithm>
#include <cstring>

#include "link/clock.h"
#include "link/diag_connection.h"
#include "link/server_transport.h"

ServerTransport::~ServerTransport() = default;

bool DiagConnection::OpenServer() {
    if (!m_port.pServer)
        return false;
    if (m_bIsConnected)
        return true;
    std::string sReason;
    if (!m_port.pServer->ConnectPort(m_port.iComPort, TimeOut_ms(QMSL_TimeOut_ServerConnect), sReason)) {
        m_textLog.LogMessage(LOG_ERR, "%s", sReason.c_str());
        return false;
    }
    m_port.pServer->Listen(&m_listener);
    return true;
}

void DiagConnection::LeaveServer() {
    if (m_port.pServer)
        m_port.pServer->StopListening(&m_listener);
}

bool DiagConnection::RefusedInServerMode(const char* sOperation) {
    if (m_port.bServerMode)
        m_textLog.LogMessage(LOG_RET, "QLIB_%s() : FAIL in QPST mode", sOperation);
    return m_port.bServerMode;
}

bool DiagConnection::SendThroughServer(const RequestBytes& request, unsigned short* piResponseSize,
                                       unsigned char* piResponseBytes, unsigned char iExpectedCommand,
                                       DWORD iTimeout) {
    if (!m_port.pServer)
        return false;
    m_textLog.LogHex(LOG_IO, request.pBytes, request.iSize, "SEND: ");
    const DWORD iStart_ms = TickCount_ms();
    QueueItem response;
    response.length = 0;
    std::string sReason;
    const bool bAnswered =
        m_port.pServer->Exchange({request.pBytes, request.iSize}, iTimeout, response, sReason);
    if (bAnswered)
        m_textLog.LogHex(LOG_IO, response.data, response.length, "REC: ");
    else
        m_textLog.LogMessage(LOG_ERR, "%s", sReason.c_str());
    m_textLog.LogMessage(LOG_IO, "STACK TIME (ms):\t%d", AsInt(TickCount_ms() - iStart_ms));
    // The server hands an answer to its listeners as well: the one that was taken here is not waited for.
    QueueItem copy;
    m_syncQueue.Pop(&copy);
    if (!bAnswered)
        return false;
    const int iReceived = response.length > 0 ? response.data[0] : -1;
    if (iReceived != iExpectedCommand) {
        m_textLog.LogMessage(LOG_IO, "SEND SYNC Failed: expected %d recreived %d", iExpectedCommand,
                             iReceived);
        return false;
    }
    *piResponseSize = std::min(*piResponseSize, response.length);
    std::memcpy(piResponseBytes, response.data, *piResponseSize);
    return true;
}

bool DiagConnection::ReconnectThroughServer(int iAttempts) {
    m_textLog.LogMessage(LOG_FN, "QLIB_DisconnectAndWaitForReconnection(iTimeOut_ms=%d)", iAttempts);
    ClosePort();
    while (iAttempts-- > 0)
        if (OpenPort())
            return true;
    return false;
}
