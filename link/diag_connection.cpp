#include "link/diag_connection.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "link/as_int.h"
#include "link/connection_state.h"
#include "link/packet_codes.h"
#include "link/serial_line.h"

namespace {

constexpr DWORD kQueueCapacity = 4096;

} // namespace

ConnectionState::ConnectionState(std::unique_ptr<Transport> pLineToUse)
    : syncQueue(kQueueCapacity),
      asyncQueue(kQueueCapacity),
      delayedQueue(kQueueCapacity),
      listener(&asyncQueue, &syncQueue),
      pLine(std::move(pLineToUse)) {}

void ConnectionState::EndLine(void* pState) {
    auto& state = *static_cast<ConnectionState*>(pState);
    state.pLine->Stop();
    state.textLog.Stop();
}

DiagConnection::DiagConnection(int iComPort) : DiagConnection(MakeLine(iComPort)) {}

DiagConnection::DiagConnection(std::unique_ptr<Transport> pLine)
    : m_pState(std::make_unique<ConnectionState>(std::move(pLine))) {
    m_pState->pLine->Start({m_pState->textLog, m_pState->listener, m_pState->syncQueue});
}

DiagConnection::~DiagConnection() {
    ShutDown();
}

void DiagConnection::StartUp() {
    DIAG_FTM_CheckAutoTextLog();
    InitTimeOuts();
}

void DiagConnection::ShutDown() {
    ClosePort();
    m_pState->pLine->Stop();
}

// --- The port ---------------------------------------------------------------------------------------

bool DiagConnection::OpenPort() {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_OpenPort()");
    m_pState->bIsConnected = m_pState->pLine->Open(m_pState->aTimeOuts[QMSL_TimeOut_ServerConnect]);
    if (m_pState->bIsConnected)
        m_pState->listener.SetDataLogHandler(&m_pState->textLog);
    m_pState->bPlaybackMode = false;
    OnPortOpened();
    m_pState->asyncQueue.Clear();
    m_pState->syncQueue.Clear();
    return m_pState->bIsConnected;
}

PortError DiagConnection::GetPortError() const {
    return m_pState->pLine->LastError();
}

bool DiagConnection::ClosePort() {
    if (!m_pState->bIsConnected)
        return true;
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_ClosePort()");
    m_pState->pLine->Close();
    m_pState->bIsConnected = false;
    StopLogging();
    return true;
}

bool DiagConnection::VerifyConnectionIsValid() {
    return m_pState->bIsConnected || !m_pState->pLine->OpensOnDemand() || OpenPort();
}

bool DiagConnection::IsPhoneConnected() {
    const bool bOpen = m_pState->bIsConnected || OpenPort();
    if (!bOpen && !VerifyConnectionIsValid())
        return false;
    constexpr unsigned char aLoopback[] = {kLoopbackRequest, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    constexpr size_t kFirstCompared = 2;
    unsigned char aResponse[kMaxPacketSize];
    const DWORD iTimeout = m_pState->aTimeOuts[QMSL_TimeOut_PhoneCheck];
    unsigned short iSize = sizeof aResponse;
    if (!SendSync(sizeof aLoopback, aLoopback, &iSize, aResponse, kLoopbackRequest, iTimeout, 0))
        return m_pState->bData2DiagSearch && m_pState->pLine->SwitchToDiagMode();
    const bool bEchoed =
        iSize == sizeof aLoopback &&
        std::equal(aLoopback + kFirstCompared, std::end(aLoopback), aResponse + kFirstCompared);
    iSize = sizeof aResponse;
    if (SendSync(1, &kVersionRequest, &iSize, aResponse, kVersionRequest, iTimeout, 0))
        return iSize > 1;
    return bEchoed;
}

bool DiagConnection::DisconnectAndWaitForReconnection(int iTimeOut_ms) {
    if (m_pState->pLine->Serial())
        return false;
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_DisconnectAndWaitForReconnection(iTimeOut_ms=%d)",
                                 iTimeOut_ms);
    ClosePort();
    for (int iAttempt = 0; iAttempt < iTimeOut_ms; ++iAttempt)
        if (OpenPort())
            return true;
    return false;
}

// --- Requests ---------------------------------------------------------------------------------------

bool DiagConnection::SendSync(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                              unsigned short* piResponseSize, unsigned char* piResponseBytes,
                              unsigned char iExpectedCommand, DWORD iTimeout, DWORD iReadDelay_ms) {
    return Exchange({{piRequestBytes, iRequestSize}, iExpectedCommand, true, iTimeout, iReadDelay_ms},
                    piResponseSize, piResponseBytes);
}

bool DiagConnection::Exchange(const LineRequest& request, unsigned short* piResponseSize,
                              unsigned char* piResponseBytes) {
    if (request.bytes.empty())
        return false;
    if (m_pState->bPlaybackMode) {
        AnswerFromRecording(request, piResponseSize, piResponseBytes);
        return true;
    }
    LineResponse response;
    if (!VerifyConnectionIsValid() || !m_pState->pLine->Exchange(request, response))
        return false;
    std::memcpy(piResponseBytes, response.item.data, std::min(*piResponseSize, response.item.length));
    *piResponseSize = std::min(*piResponseSize, response.iLength);
    return true;
}

void DiagConnection::AnswerFromRecording(const LineRequest& request, unsigned short* piResponseSize,
                                         unsigned char* piResponseBytes) {
    const int iRequestSize = static_cast<int>(request.bytes.size());
    DataLogFileHandler& log = m_pState->textLog;
    log.LogMessage(LOG_FN, "QLIB_SendSync(iRequestSize=%d, iTimeout=%d)--simulation mode", iRequestSize,
                   AsInt(request.iTimeOut_ms));
    log.LogHex(LOG_IO, request.bytes.data(), iRequestSize, "SEND: ");
    QueueItem reply;
    m_pState->syncQueue.Pop(&reply);
    *piResponseSize = std::min(*piResponseSize, reply.length);
    std::memcpy(piResponseBytes, reply.data, *piResponseSize);
    log.LogHex(LOG_IO, reply.data, reply.length, "SYNC REC--listener--(%d bytes): ", reply.length);
}

bool DiagConnection::SendASync(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                               DWORD iTimeout, bool bForceStartFlag) {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_SendASync(iRequestSize=%d )", iRequestSize);
    SerialControls* const pSerial = OpenSerialFor("SendASync");
    return pSerial != nullptr && pSerial->Write({piRequestBytes, iRequestSize}, iTimeout, bForceStartFlag);
}

bool DiagConnection::SendRAW(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                             unsigned short* piResponseSize, unsigned char* piResponseBytes,
                             unsigned char iExpectedCommand, DWORD iTimeout, DWORD iReadDelay_ms) {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_SendRAW(iRequestSize=%d )", iRequestSize);
    SerialControls* const pSerial = OpenSerialFor("SendRAW");
    const LineRequest request{
        {piRequestBytes, iRequestSize}, iExpectedCommand, false, iTimeout, iReadDelay_ms};
    QueueItem reply;
    if (pSerial == nullptr || !pSerial->ExchangeText(request, reply))
        return false;
    *piResponseSize = std::min(*piResponseSize, reply.length);
    std::memcpy(piResponseBytes, reply.data, *piResponseSize);
    return true;
}

// --- Observers --------------------------------------------------------------------------------------

bool DiagConnection::AddEventListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter) {
    return m_pState->pLine->AddListener(pListener, pFilter);
}

void DiagConnection::RemoveEventListener(CQLibEvents_Listener* pListener) {
    m_pState->pLine->RemoveListener(pListener);
}

void DiagConnection::ConfigureAsyncMessageCallBack(void* pUserData, AsyncMessageCallBack pfnCallBack) {
    m_pState->listener.ConfigureAsyncMessageCallBack(pUserData, pfnCallBack);
}
