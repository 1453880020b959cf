#include "link/event_listener.h"

#include <algorithm>
#include <span>

#include "link/crc16.h"
#include "link/event_names.h"
#include "link/extended_message.h"
#include "link/extended_message_text.h"
#include "link/message_queue.h"
#include "link/packet_codes.h"
#include "link/packet_view.h"
#include "link/radio_test_status.h"
#include "link/text_log.h"

namespace {

constexpr size_t kLeastPacketSize = 2; // shorter ones are line noise
constexpr unsigned char kNotSeen = 0;

/// An event report with a length field of 0 is the response to an event-report control request.
bool IsEventControlResponse(std::span<const unsigned char> packet) {
    return packet.size() >= 3 && packet[0] == kEventReport && packet[1] == 0 && packet[2] == 0;
}

} // namespace

CQLibEventListener::CQLibEventListener(CQLibMessageQueue* pAsyncQueue, CQLibMessageQueue* pSyncQueue)
    : m_pAsyncQueue(pAsyncQueue),
      m_pSyncQueue(pSyncQueue),
      m_pRadioTests(std::make_unique<RadioTestStatus>()) {}

CQLibEventListener::~CQLibEventListener() = default;

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
    if (iLength < static_cast<LONG>(kLeastPacketSize))
        return;
    ReceivePacket({pData, std::min<size_t>(static_cast<size_t>(iLength), kMaxPacketSize)});
}

void CQLibEventListener::ReceivePacket(std::span<unsigned char> packet) {
    if (packet.empty())
        return;
    if (packet.size() >= kLeastPacketSize)
        CallBack(packet);
    Sort(packet);
}

bool CQLibEventListener::HasCallBack() {
    const std::lock_guard lock(m_callBackLock);
    return m_pfnAsyncMessageCallBack != nullptr;
}

bool CQLibEventListener::ReceiveDirectly(std::span<unsigned char> packet) {
    if (HasCallBack())
        return false;
    if (packet.size() >= kLeastPacketSize)
        Sort(packet);
    return true;
}

void CQLibEventListener::Sort(std::span<const unsigned char> packet) {
    LogUnsolicited(packet);
    m_pRadioTests->Receive(packet, m_pLogHandler);
    if (IsEventControlResponse(packet)) {
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

void CQLibEventListener::LogUnsolicited(std::span<const unsigned char> packet) {
    DataLogFileHandler* pLog = m_pLogHandler;
    if (pLog == nullptr || !pLog->Wants(LOG_ASYNC))
        return;
    if (packet[0] == kExtendedMessage) {
        ExtendedMessage message;
        char sText[kExtendedMessageTextSize];
        ParseExtendedMessage(packet, message);
        DescribeExtendedMessage(message, sText);
        pLog->LogMessage(LOG_ASYNC, "%s", sText);
    } else if (packet[0] == kEventReport && !IsEventControlResponse(packet)) {
        constexpr size_t kEventIdOffset = 3;
        const PacketView report(WithoutFcs(packet));
        char sName[kEventTextSize];
        if (!report.Has(kEventIdOffset, 2))
            return;
        GetEventText(report.U16(kEventIdOffset), sName);
        pLog->LogMessage(LOG_ASYNC, "Event ID: %d, %s", report.U16(kEventIdOffset), sName);
    }
}

void CQLibEventListener::LogPacket(const char* sKind, std::span<const unsigned char> packet) {
    const int iLength = static_cast<int>(packet.size());
    if (DataLogFileHandler* pLog = m_pLogHandler; pLog != nullptr)
        pLog->LogHex(LOG_IO, packet.data(), iLength, "%s(%d bytes): ", sKind, iLength);
}

// --- Radio tests ------------------------------------------------------------------------------------

bool CQLibEventListener::FTM_GSM_BER_ClearStatus() {
    m_pRadioTests->Change([](RadioTestBlocks& blocks) {
        std::ranges::fill(blocks.gsm.aReceived, kNotSeen);
        std::ranges::fill(blocks.gsm.aTypeReceived, kNotSeen);
        std::ranges::fill(blocks.gsm.aTypeCrcPass, kNotSeen);
    });
    return true;
}

bool CQLibEventListener::FTM_EGPRS_BER_ClearStatus() {
    constexpr unsigned char kNoEvent = 2;
    m_pRadioTests->Change([](RadioTestBlocks& blocks) {
        std::ranges::fill(blocks.egprs.aReceived, kNotSeen);
        blocks.egprs.iUplinkEvent = kNoEvent;
        blocks.egprs.iDownlinkEvent = kNoEvent;
    });
    return true;
}

bool CQLibEventListener::FTM_WCDMA_BER_ClearStatus() {
    m_pRadioTests->Change([](RadioTestBlocks& blocks) {
        std::ranges::fill(blocks.wcdma.aReceived, kNotSeen);
        blocks.wcdma.iCleared = 0;
    });
    return true;
}

bool CQLibEventListener::FTM_HSDPA_BER_ClearStatus() {
    m_pRadioTests->Change(
        [](RadioTestBlocks& blocks) { std::ranges::fill(blocks.hsdpa.aReceived, kNotSeen); });
    return true;
}

bool CQLibEventListener::FTM_GSM_BER_GetStatus(GSM_BER_State* pState) {
    *pState = m_pRadioTests->Copy().gsm;
    return true;
}

bool CQLibEventListener::FTM_EGPRS_BER_GetStatus(EGPRS_BER_State* pState) {
    *pState = m_pRadioTests->Copy().egprs;
    return true;
}

bool CQLibEventListener::FTM_WCDMA_BER_GetStatus(WCDMA_BER_State* pState) {
    *pState = m_pRadioTests->Copy().wcdma;
    return true;
}

bool CQLibEventListener::FTM_HSDPA_BER_GetStatus(HSDPA_BER_State* pState) {
    *pState = m_pRadioTests->Copy().hsdpa;
    return true;
}
