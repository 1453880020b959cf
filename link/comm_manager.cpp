#include "link/comm_manager.h"

#include <system_error>

#include "link/as_int.h"
#include "link/clock.h"
#include "link/text_log.h"

namespace {

constexpr DWORD kReadLimit_ms = 500;
constexpr Milliseconds kCloseLimit(1000);
// The receive thread of an idle port wakes up this often; data and closing wake it at once where possible.
constexpr DWORD kIdleWait_ms = 60 * 1000;

} // namespace

CQLibCommManager::CQLibCommManager(CQLibEventDispatcher& dispatcher, DataLogFileHandler& log)
    : m_dispatcher(dispatcher), m_log(log) {}

CQLibCommManager::~CQLibCommManager() {
    Close();
    JoinReceiver();
}

bool CQLibCommManager::Open(int iPort) {
    if (m_bThreadRunning)
        return true;
    JoinReceiver();
    m_bThreadFailed = false;
    if (!m_port.Open(iPort))
        return false;
    m_framing.SetPort(&m_port);
    m_framing.SetLogHandler(&m_log);
    {
        const CallersTurn turn(Reader());
        m_decoder.emplace(m_dispatcher, m_log);
    }
    m_fineTimer.emplace();
    m_bThreadEnded = false;
    Reader().Start();
    try {
        m_thread = std::thread(&CQLibCommManager::ReceiveLoop, this);
    } catch (const std::system_error&) {
        m_log.LogMessage(LOG_ERR, "Error. No thread to receive.");
        m_port.Close();
        m_fineTimer.reset();
        m_bThreadFailed = true;
        return false;
    }
    m_bThreadRunning = true;
    return true;
}

bool CQLibCommManager::Close() {
    if (!m_bThreadRunning)
        return true;
    Reader().Stop();
    m_port.Close();
    m_fineTimer.reset();
    m_bThreadRunning = false;
    std::unique_lock lock(m_endLock);
    const bool bEnded = m_ended.wait_for(lock, kCloseLimit, [this] { return m_bThreadEnded; });
    lock.unlock();
    if (bEnded)
        JoinReceiver();
    return bEnded;
}

void CQLibCommManager::JoinReceiver() {
    if (m_thread.joinable())
        m_thread.join();
}

void CQLibCommManager::ReceiveLoop() {
    while (Reader().AwaitPause()) {
        m_port.WaitForInput(kIdleWait_ms);
        if (Reader().BeginPass()) {
            ReceivePass();
            Reader().EndPass();
        }
    }
    const std::lock_guard lock(m_endLock);
    m_bThreadEnded = true;
    m_ended.notify_one();
}

bool CQLibCommManager::ReadFor(DWORD iLimit_ms) {
    if (iLimit_ms == 0 && m_port.InQueueCount() == 0)
        return true;
    const bool bPresent = iLimit_ms == 0 || m_port.WaitForInput(iLimit_ms);
    ReceivePass();
    return bPresent;
}

void CQLibCommManager::ReceivePass() {
    auto iCount = static_cast<DWORD>(m_aReadBuffer.size());
    const bool bInTime = m_framing.ReceiveWaiting(m_aReadBuffer.data(), &iCount, kReadLimit_ms);
    if (iCount == 0)
        return;
    if (m_log.Wants(LOG_IO)) {
        char sHex[DataLogFileHandler::kHexTextSize];
        DataLogFileHandler::FormatHexBytes(sHex, m_aReadBuffer.data(), AsInt(iCount));
        m_log.LogMessage(LOG_IO, "THREAD READ (%d bytes): %s ", AsInt(iCount), sHex);
    }
    if (!bInTime)
        return;
    if (m_bFlushRequest.exchange(false))
        m_decoder->Reset();
    m_decoder->Decode({m_aReadBuffer.data(), iCount}, CurrentReceiveMode());
}

ReceiveMode CQLibCommManager::CurrentReceiveMode() const {
    if (m_iPacketMode == 0)
        return ReceiveMode::Framed;
    return m_bRawReplyPending ? ReceiveMode::RawReply : ReceiveMode::Raw;
}

bool CQLibCommManager::Send(const unsigned char* pPacket, DWORD iSize, DWORD iTimeout, bool bForceStartFlag) {
    return m_framing.Send(pPacket, iSize, iTimeout, bForceStartFlag ? 1 : 0);
}

bool CQLibCommManager::Data2DM(unsigned char iBaudRateMask) {
    return m_framing.Data2DM(iBaudRateMask);
}

bool CQLibCommManager::SetStartFlag(bool bStartFlag) {
    return m_framing.SetStartFlag(bStartFlag ? 1 : 0) != 0;
}

void CQLibCommManager::SetPacketMode(int iPacketMode) {
    m_iPacketMode = iPacketMode;
    m_framing.SetRawMode(iPacketMode);
}
