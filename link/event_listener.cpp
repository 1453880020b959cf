#include "link/event_listener.h"

#include <algorithm>
#include <span>

#include "link/message_queue.h"
#include "link/packet_codes.h"
#include "link/text_log.h"

namespace {

/// An event report whose length field is 0 is the phone's answer to an event-report control request.
bool IsEventControlAnswer(std::span<const unsigned char> packet) {
    return packet.size() >= 3 && packet[0] == kEventReport && packet[1] == 0 && packet[2] == 0;
}

} // namespace

CQLibEventListener::CQLibEventListener(CQLibMessageQueue* pAsyncQueue, CQLibMessageQueue* pSyncQueue)
    : m_pAsyncQueue(pAsyncQueue), m_pSyncQueue(pSyncQueue) {}

void CQLibEventListener::ConfigureAsyncMessageCallBack(void* pUserData, AsyncMessageCallBack pfnCallBack) {
    const std::lock_guard lock(m_callBackLock);
    m_pAsyncCallBackUserData = pUserData;
    m_pfnAsyncMessageCallBack = pfnCallBack;
}

void CQLibEventListener::CallBack(std::span<unsigned char> packet) {
    std::unique_lock lock(m_callBackLock);
    const AsyncMessageCallBack pfnCallBack = m_pfnAsyncMessageCallBack;
    void* const pUserData = m_pAsyncCallBackUserData;
    lock.unlock();
    if (pfnCallBack != nullptr)
        pfnCallBack(static_cast<unsigned short>(packet.size()), packet.data(), pUserData);
}

void CQLibEventListener::messageReceived(LONG iLength, unsigned char* pData, unsigned int, LONG, short,
                                         DWORD) {
    if (iLength < 2)
        return;
    const std::span packet(pData, std::min<size_t>(static_cast<size_t>(iLength), kMaxPacketSize));
    CallBack(packet);
    if (IsEventControlAnswer(packet)) {
        LogPacket("ASYNC REC--listener--", packet);
        m_pSyncQueue->Push(packet);
    } else if (!IsUnsolicitedCode(packet[0])) {
        LogPacket("SYNC REC--listener--", packet);
        m_pSyncQueue->Push(packet);
    } else if (m_bPhoneLoggingEnabled) {
        m_pAsyncQueue->Push(packet);
        LogPacket("ASYNC REC ", packet);
    }
}

void CQLibEventListener::LogPacket(const char* sKind, std::span<const unsigned char> packet) {
    const int iLength = static_cast<int>(packet.size());
    if (DataLogFileHandler* pLog = m_pLogHandler; pLog != nullptr)
        pLog->LogHex(LOG_IO, packet.data(), iLength, "%s(%d bytes): ", sKind, iLength);
}
