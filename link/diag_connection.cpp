#include "link/diag_connection.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <thread>

#include "link/clock.h"
#include "link/comm_manager.h"
#include "link/packet_codes.h"

namespace {

constexpr DWORD kQueueCapacity = 4096;
constexpr DWORD kDataModeTimeOut_ms = 80;
constexpr unsigned char kDiagModeRates = 4; // 115200 baud
constexpr const char* kAutoLogMarker = "QMSL_auto_start_log.txt";
constexpr const char* kAutoLogName = "QMSL_Log.txt";

} // namespace

DiagConnection::DiagConnection(const ConnectionPort& port)
    : m_port(port),
      m_iLogFlags(kDefaultLogFlags),
      m_syncQueue(kQueueCapacity),
      m_asyncQueue(kQueueCapacity),
      m_delayedQueue(kQueueCapacity),
      m_listener(&m_asyncQueue, &m_syncQueue) {
    if (m_port.bServerMode)
        return;
    m_pLink = std::make_unique<CQLibCommManager>(m_dispatcher, m_textLog);
    m_dispatcher.AddListener(&m_listener, nullptr);
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
    LeaveServer();
    m_dispatcher.Stop();
}

// --- The port ---------------------------------------------------------------------------------------

bool DiagConnection::OpenPort() {
    m_textLog.LogMessage(LOG_FN, "QLIB_OpenPort()");
    m_bIsConnected = m_port.bServerMode ? OpenServer() : m_pLink->Open(m_port.iComPort);
    if (m_bIsConnected)
        m_listener.SetDataLogHandler(&m_textLog);
    m_bPlaybackMode = false;
    OnPortOpened();
    m_asyncQueue.Clear();
    m_syncQueue.Clear();
    return m_bIsConnected;
}

PortError DiagConnection::GetPortError() const {
    return m_pLink ? m_pLink->OpenError() : PortError::None;
}

bool DiagConnection::ClosePort() {
    if (!m_bIsConnected)
        return true;
    m_textLog.LogMessage(LOG_FN, "QLIB_ClosePort()");
    if (m_pLink)
        m_pLink->Close();
    LeaveServer();
    m_bIsConnected = false;
    StopLogging();
    return true;
}

bool DiagConnection::VerifyConnectionIsValid() {
    return m_port.bServerMode ? m_port.pServer != nullptr : m_bIsConnected || OpenPort();
}

bool DiagConnection::IsPhoneConnected() {
    const bool bOpen = m_bIsConnected || OpenPort();
    if (!bOpen && (m_port.bServerMode ? !m_port.pServer : !OpenPort()))
        return false;
    constexpr unsigned char aLoopback[] = {kLoopbackRequest, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    constexpr size_t kFirstCompared = 2;
    unsigned char aResponse[kMaxPacketSize];
    const DWORD iTimeout = TimeOut_ms(QMSL_TimeOut_PhoneCheck);
    unsigned short iSize = sizeof aResponse;
    if (!SendSync(sizeof aLoopback, aLoopback, &iSize, aResponse, kLoopbackRequest, iTimeout, 0))
        return m_bData2DiagSearch && m_pLink && m_pLink->Data2DM(kDiagModeRates);
    const bool bEchoed =
        iSize == sizeof aLoopback &&
        std::equal(aLoopback + kFirstCompared, std::end(aLoopback), aResponse + kFirstCompared);
    iSize = sizeof aResponse;
    if (SendSync(1, &kVersionRequest, &iSize, aResponse, kVersionRequest, iTimeout, 0))
        return iSize > 1;
    return bEchoed;
}

bool DiagConnection::DisconnectAndWaitForReconnection(int iTimeOut_ms) {
    return m_port.bServerMode && ReconnectThroughServer(iTimeOut_ms);
}

// --- Requests ---------------------------------------------------------------------------------------

bool DiagConnection::WriteRequest(const RequestBytes& request, DWORD iTimeout, bool bForceStartFlag,
                                  DWORD& iTaken_ms) {
    const DWORD iStart_ms = TickCount_ms();
    const bool bSent = m_pLink->Send(request.pBytes, request.iSize, iTimeout, bForceStartFlag);
    iTaken_ms = TickCount_ms() - iStart_ms;
    return bSent;
}

void DiagConnection::LogWritten(DWORD iTimeout, DWORD iTaken_ms) {
    m_textLog.LogMessage(LOG_IO, "OK\t Timeout=%d", AsInt(iTimeout));
    m_textLog.LogMessage(LOG_IO, "WRITE STACK TIME (ms):\t%d", AsInt(iTaken_ms));
}

bool DiagConnection::WriteAndWait(const RequestBytes& request, DWORD iTimeout, DWORD iReadDelay_ms,
                                  const unsigned char* piFirstByte, QueueItem& reply) {
    m_syncQueue.Clear();
    DWORD iTaken_ms = 0;
    if (!WriteRequest(request, iTimeout, false, iTaken_ms)) {
        m_textLog.LogMessage(LOG_ERR, "Error. Send data failed.");
        return false;
    }
    LogWritten(iTimeout, iTaken_ms);
    const DWORD iStart_ms = TickCount_ms();
    std::this_thread::sleep_for(Milliseconds(iReadDelay_ms));
    if (!WaitForReply(iTimeout, piFirstByte, reply)) {
        m_textLog.LogMessage(LOG_ERR, "Error. Read failed.");
        return false;
    }
    m_textLog.LogMessage(LOG_IO, "READ STACK TIME (ms):\t%d", AsInt(TickCount_ms() - iStart_ms));
    return true;
}

bool DiagConnection::WaitForReply(DWORD iTimeout, const unsigned char* piFirstByte, QueueItem& reply) {
    const auto deadline = Clock::now() + Milliseconds(iTimeout);
    do {
        const auto left = std::chrono::ceil<Milliseconds>(deadline - Clock::now()).count();
        if (!m_syncQueue.WaitPop(&reply, static_cast<DWORD>(std::max<decltype(left)>(left, 1))))
            continue;
        if (piFirstByte == nullptr || (reply.length > 0 && reply.data[0] == *piFirstByte))
            return true;
        m_textLog.LogHex(LOG_IO, reply.data, reply.length, "REC \t");
    } while (Clock::now() < deadline);
    return false;
}

bool DiagConnection::SendSync(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                              unsigned short* piResponseSize, unsigned char* piResponseBytes,
                              unsigned char iExpectedCommand, DWORD iTimeout, DWORD iReadDelay_ms) {
    if (iRequestSize == 0)
        return false;
    const unsigned char iExpected = m_port.bServerMode ? iExpectedCommand : piRequestBytes[0];
    return SendSyncExpecting(iRequestSize, piRequestBytes, piResponseSize, piResponseBytes, iExpected,
                             iTimeout, iReadDelay_ms);
}

bool DiagConnection::SendSyncExpecting(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                                       unsigned short* piResponseSize, unsigned char* piResponseBytes,
                                       unsigned char iExpectedCommand, DWORD iTimeout, DWORD iReadDelay_ms) {
    constexpr unsigned short kFcsSize = 2;
    const RequestBytes request{iRequestSize, piRequestBytes};
    if (iRequestSize == 0)
        return false;
    if (m_bPlaybackMode) {
        AnswerFromRecording(request, iTimeout, piResponseSize, piResponseBytes);
        return true;
    }
    if (!VerifyConnectionIsValid())
        return false;
    if (m_port.bServerMode)
        return SendThroughServer(request, piResponseSize, piResponseBytes, iExpectedCommand, iTimeout);
    m_textLog.LogHex(LOG_IO, piRequestBytes, iRequestSize, "SEND (%d bytes):", iRequestSize);
    QueueItem reply;
    if (!WriteAndWait(request, iTimeout, iReadDelay_ms, &iExpectedCommand, reply))
        return false;
    std::memcpy(piResponseBytes, reply.data, std::min(*piResponseSize, reply.length));
    const auto iLength = static_cast<unsigned short>(reply.length - std::min(reply.length, kFcsSize));
    *piResponseSize = std::min(*piResponseSize, iLength);
    return true;
}

void DiagConnection::AnswerFromRecording(const RequestBytes& request, DWORD iTimeout,
                                         unsigned short* piResponseSize, unsigned char* piResponseBytes) {
    m_textLog.LogMessage(LOG_FN, "QLIB_SendSync(iRequestSize=%d, iTimeout=%d)--simulation mode",
                         request.iSize, AsInt(iTimeout));
    m_textLog.LogHex(LOG_IO, request.pBytes, request.iSize, "SEND: ");
    QueueItem reply;
    m_syncQueue.Pop(&reply);
    *piResponseSize = std::min(*piResponseSize, reply.length);
    std::memcpy(piResponseBytes, reply.data, *piResponseSize);
    m_textLog.LogHex(LOG_IO, reply.data, reply.length, "SYNC REC--listener--(%d bytes): ", reply.length);
}

bool DiagConnection::SendASync(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                               DWORD iTimeout, bool bForceStartFlag) {
    m_textLog.LogMessage(LOG_FN, "QLIB_SendASync(iRequestSize=%d )", iRequestSize);
    if (RefusedInServerMode("SendASync") || !VerifyConnectionIsValid())
        return false;
    m_textLog.LogHex(LOG_IO, piRequestBytes, iRequestSize, "SEND_ASYNC (%d bytes):", iRequestSize);
    DWORD iTaken_ms = 0;
    const bool bSent = WriteRequest({iRequestSize, piRequestBytes}, iTimeout, bForceStartFlag, iTaken_ms);
    LogWritten(iTimeout, iTaken_ms);
    return bSent;
}

bool DiagConnection::SendRAW(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                             unsigned short* piResponseSize, unsigned char* piResponseBytes,
                             unsigned char /*iExpectedCommand*/, DWORD iTimeout, DWORD iReadDelay_ms) {
    m_textLog.LogMessage(LOG_FN, "QLIB_SendRAW(iRequestSize=%d )", iRequestSize);
    if (RefusedInServerMode("SendRAW") || !VerifyConnectionIsValid())
        return false;
    m_textLog.LogHex(LOG_IO, piRequestBytes, iRequestSize, "SEND RAW (%d bytes):", iRequestSize);
    m_pLink->SetRawReplyPending(true);
    QueueItem reply;
    if (!WriteAndWait({iRequestSize, piRequestBytes}, iTimeout, iReadDelay_ms, nullptr, reply))
        return false;
    m_pLink->SetRawReplyPending(false);
    *piResponseSize = std::min(*piResponseSize, reply.length);
    std::memcpy(piResponseBytes, reply.data, *piResponseSize);
    return true;
}

// --- Controls of the link ---------------------------------------------------------------------------

bool DiagConnection::SetStartFlag(bool bStartFlag) {
    m_textLog.LogMessage(LOG_FN, "QLIB_SetStartFlag(bStartFlag=%d )", bStartFlag ? 1 : 0);
    if (RefusedInServerMode("SetStartFlag") || !VerifyConnectionIsValid())
        return false;
    m_textLog.LogMessage(LOG_IO, "START_FLAG = %s", bStartFlag ? "ON" : "OFF");
    return m_pLink->SetStartFlag(bStartFlag);
}

bool DiagConnection::SetPacketMode(int iPacketMode) {
    m_textLog.LogMessage(LOG_FN, "QLIB_SetPacketMode(iPacketMode=%d )", iPacketMode);
    if (iPacketMode < 0 || iPacketMode > 2) {
        m_textLog.LogMessage(LOG_FN, "QLIB_SetPacketMode() -  Error, Invalid packet mode");
        return false;
    }
    if (RefusedInServerMode("SetPacketMode"))
        return false;
    const int iFormerMode = m_pLink->GetPacketMode();
    if (!VerifyConnectionIsValid())
        return false;
    if (iFormerMode == 0 && iPacketMode == 1 && !SwitchPhoneToDataMode())
        return false;
    if (iFormerMode == 1 && iPacketMode == 0 && !m_pLink->Data2DM(kDiagModeRates))
        return false;
    m_bData2DiagSearch = iPacketMode == 0;
    m_textLog.LogMessage(LOG_IO, "RAW_DATA_FLAG = %s", iPacketMode != 0 ? "ON" : "OFF");
    m_pLink->SetPacketMode(iPacketMode);
    return true;
}

bool DiagConnection::SwitchPhoneToDataMode() {
    unsigned char aResponse[kMaxPacketSize];
    unsigned short iSize = sizeof aResponse;
    return SendSync(1, &kDataModeRequest, &iSize, aResponse, kDataModeRequest, kDataModeTimeOut_ms, 0) &&
           iSize >= 2 && aResponse[1] == 1;
}

bool DiagConnection::SetDTR_State(bool bSetDTR_High) {
    m_textLog.LogMessage(LOG_FN, "QLIB_SetDTR_State(bSetDTR_High=%d)", bSetDTR_High ? 1 : 0);
    if (!m_pLink)
        return false;
    m_pLink->SetDTR(bSetDTR_High);
    return true;
}

bool DiagConnection::SetRTS_State(bool bSetRTS_High) {
    m_textLog.LogMessage(LOG_FN, "QLIB_SetRTS_State(bSetRTS_High=%d)", bSetRTS_High ? 1 : 0);
    if (!m_pLink)
        return false;
    m_pLink->SetRTS(bSetRTS_High);
    return true;
}

bool DiagConnection::FlushRxBuffer() {
    m_textLog.LogMessage(LOG_FN, "QLIB_FlushRxBuffer()");
    if (!m_pLink)
        return false;
    m_pLink->FlushRxBuffer();
    return true;
}

bool DiagConnection::SetData2DiagSearch(bool bData2DiagSearch) {
    m_bData2DiagSearch = bData2DiagSearch;
    return true;
}

// --- Time-outs and timers ---------------------------------------------------------------------------

void DiagConnection::InitTimeOuts() {
    for (int i = 0; i < kTimeOutCount; ++i)
        ConfigureTimeOut(static_cast<QMSL_TimeOutType_Enum>(i), kDefaultTimeOuts[static_cast<size_t>(i)]);
}

bool DiagConnection::ConfigureTimeOut(QMSL_TimeOutType_Enum eTimeOutId, DWORD iNewValue_ms) {
    m_textLog.LogMessage(LOG_FN, "QLIB_ConfigureTimeOut( eTimeOutId = %d, iNewValue_ms = %d)", eTimeOutId,
                         AsInt(iNewValue_ms));
    if (!IsTimeOutId(eTimeOutId)) {
        m_textLog.LogMessage(LOG_RET, "QLIB_ConfigureTimeOut() -- Error, invalid ID.");
        return false;
    }
    m_aTimeOuts[static_cast<size_t>(eTimeOutId)] = iNewValue_ms;
    return true;
}

DWORD DiagConnection::GetTimeOut(QMSL_TimeOutType_Enum eTimeOutId) {
    m_textLog.LogMessage(LOG_FN, "QLIB_GetTimeOut( eTimeOutId = %d )", eTimeOutId);
    if (!IsTimeOutId(eTimeOutId)) {
        m_textLog.LogMessage(LOG_RET, "QLIB_GetTimeOut() -- Error, invalid ID.");
        return 0;
    }
    const DWORD iValue_ms = TimeOut_ms(eTimeOutId);
    m_textLog.LogMessage(LOG_RET, "QLIB_GetTimeOut( eTimeOutId = %d, iNewValue_ms = %d)", eTimeOutId,
                         AsInt(iValue_ms));
    return iValue_ms;
}

DWORD DiagConnection::StartTimer() {
    static std::atomic<DWORD> iLastHandle{0};
    const DWORD iHandle = ++iLastHandle;
    m_timers.push_back({iHandle, TickCount_ms()});
    return iHandle;
}

const DiagConnection::TimerEntry* DiagConnection::FindTimer(DWORD iTimerHandle) const {
    const auto found = std::find_if(m_timers.begin(), m_timers.end(),
                                    [&](const TimerEntry& entry) { return entry.iHandle == iTimerHandle; });
    return found == m_timers.end() ? nullptr : &*found;
}

DWORD DiagConnection::GetTimerElapsed(DWORD iTimerHandle) {
    if (FindTimer(iTimerHandle) == nullptr)
        m_textLog.LogMessage(LOG_RET, " Timer handle not found: %d", AsInt(iTimerHandle));
    return StopTimer(iTimerHandle);
}

DWORD DiagConnection::StopTimer(DWORD iTimerHandle) {
    const TimerEntry* pEntry = FindTimer(iTimerHandle);
    return pEntry == nullptr ? 0 : TickCount_ms() - pEntry->iStart_ms;
}

DWORD DiagConnection::PrintTimer(DWORD iTimerHandle, const char* sPrefix) {
    const DWORD iElapsed_ms = GetTimerElapsed(iTimerHandle);
    if (iElapsed_ms != 0 && sPrefix != nullptr)
        m_textLog.LogMessage(LOG_RET, "%s%d", sPrefix, AsInt(iElapsed_ms));
    return iElapsed_ms;
}

// --- Observers --------------------------------------------------------------------------------------

bool DiagConnection::AddEventListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter) {
    if (!m_port.bServerMode)
        m_dispatcher.AddListener(pListener, pFilter);
    return !m_port.bServerMode;
}

void DiagConnection::RemoveEventListener(CQLibEvents_Listener* pListener) {
    m_dispatcher.RemoveListener(pListener);
}

void DiagConnection::ConfigureAsyncMessageCallBack(void* pUserData, AsyncMessageCallBack pfnCallBack) {
    m_listener.ConfigureAsyncMessageCallBack(pUserData, pfnCallBack);
}

// --- Text log ---------------------------------------------------------------------------------------

bool DiagConnection::StartLogging(const char* sFileName) {
    return m_textLog.Start(sFileName, m_iLogFlags);
}

bool DiagConnection::StopLogging() {
    m_textLog.LogMessage(LOG_FN, "QLIB_StopLogging()");
    m_textLog.Stop();
    return true;
}

bool DiagConnection::SetLogFlags(unsigned int uiLogFlags) {
    m_textLog.LogMessage(LOG_FN, "QLIB_SetLogFlags(uiLogFlags=0x%04X)", uiLogFlags);
    m_textLog.SetFlags(uiLogFlags);
    m_iLogFlags = uiLogFlags;
    return true;
}

void DiagConnection::ConfigureLibraryTextLogCallBack(void* pUserData, TextLogCallBack pfnCallBack) {
    m_textLog.SetCallBack(pUserData, pfnCallBack);
}

bool DiagConnection::AddUserMessageToTextLog(unsigned int iCategory, const char* sText, bool bToStdout) {
    if (bToStdout)
        fputs(sText, stdout);
    m_textLog.LogMessage(iCategory, "%s", sText);
    return true;
}

void DiagConnection::DIAG_FTM_CheckAutoTextLog() {
    FILE* pMarker = fopen(kAutoLogMarker, "r");
    if (pMarker == nullptr)
        return;
    fclose(pMarker);
    SetLogFlags(kDefaultLogFlags);
    StartLogging(kAutoLogName);
}
