// The connection's own listener: sorts received packets into responses and unsolicited packets.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <span>

#include "link/async_callback.h"
#include "link/event_dispatcher.h"
#include "link/radio_test_blocks.h"
#include "platform/export.h"
#include "platform/types.h"

class CQLibMessageQueue;
class DataLogFileHandler;
class RadioTestStatus;

/// CQLibEventListener puts responses into the command-response (sync) queue and, while phone logging is
/// enabled, log records, debug messages and event reports into the phone-log (async) queue. It owns neither
/// queue. Radio-test records also update its status blocks, whether phone logging is enabled or not. Under
/// LOG_ASYNC it logs extended debug messages and the names of events as text. messageReceived runs on the
/// delivery thread, ReceiveDirectly on the thread that reads the port, everything else on the caller's.
class QUILLET_API CQLibEventListener : public CQLibEvents_Listener {
public:
    /// Makes a listener that fills the two queues, which must outlive it.
    CQLibEventListener(CQLibMessageQueue* pAsyncQueue, CQLibMessageQueue* pSyncQueue);
    ~CQLibEventListener() override;

    /// messageReceived sorts one packet.
    void messageReceived(LONG iLength, unsigned char* pData, unsigned int iValue3, LONG iValue4,
                         short iValue5, DWORD iValue6) override;

    /// ReceivePacket is messageReceived for a recorded packet, on the caller's thread. A recording may leave
    /// a single byte of a packet: such a packet is queued but not passed to the callback.
    void ReceivePacket(std::span<unsigned char> packet);

    /// ReceiveDirectly is messageReceived on the thread that read the packet. False, without effect, when a
    /// callback is registered, because callbacks run on the delivery thread only.
    bool ReceiveDirectly(std::span<unsigned char> packet);
    /// HasCallBack returns whether a callback is registered.
    bool HasCallBack();

    /// ConfigureAsyncMessageCallBack registers the callback (null: none). It is called with no lock held but
    /// the dispatcher's; a call in progress may still be running when this returns.
    void ConfigureAsyncMessageCallBack(void* pUserData, AsyncMessageCallBack pfnCallBack);
    /// GetAsyncQueue, GetSyncQueue return the queues.
    CQLibMessageQueue* GetAsyncQueue() const { return m_pAsyncQueue; }
    CQLibMessageQueue* GetSyncQueue() const { return m_pSyncQueue; }
    /// SetLoggingEnabled sets whether unsolicited packets are queued (initially they are dropped).
    void SetLoggingEnabled(bool bEnabled) { m_bPhoneLoggingEnabled = bEnabled; }
    /// SetDataLogHandler attaches the text log (null: none).
    void SetDataLogHandler(DataLogFileHandler* pLogHandler) { m_pLogHandler = pLogHandler; }

    // --- Radio tests: any thread; always true -------------------------------------------------------

    /// ..._ClearStatus clears the flags of the records that arrived (RadioTestBlocks lists what else it
    /// clears), ..._GetStatus copies a status block.
    bool FTM_GSM_BER_ClearStatus();
    bool FTM_GSM_BER_GetStatus(GSM_BER_State* pState);
    bool FTM_EGPRS_BER_ClearStatus();
    bool FTM_EGPRS_BER_GetStatus(EGPRS_BER_State* pState);
    bool FTM_WCDMA_BER_ClearStatus();
    bool FTM_WCDMA_BER_GetStatus(WCDMA_BER_State* pState);
    bool FTM_HSDPA_BER_ClearStatus();
    bool FTM_HSDPA_BER_GetStatus(HSDPA_BER_State* pState);
    /// RadioTests returns the status blocks themselves, for waiting on them.
    RadioTestStatus& RadioTests() { return *m_pRadioTests; }

private:
    void CallBack(std::span<unsigned char> packet);
    void Sort(std::span<const unsigned char> packet);
    void LogUnsolicited(std::span<const unsigned char> packet);
    void LogPacket(const char* sKind, std::span<const unsigned char> packet);

    CQLibMessageQueue* const m_pAsyncQueue;
    CQLibMessageQueue* const m_pSyncQueue;
    std::atomic<bool> m_bPhoneLoggingEnabled{false};
    std::atomic<DataLogFileHandler*> m_pLogHandler{nullptr};

    const std::unique_ptr<RadioTestStatus> m_pRadioTests;

    std::mutex m_callBackLock;
    AsyncMessageCallBack m_pfnAsyncMessageCallBack = nullptr;
    void* m_pAsyncCallBackUserData = nullptr;
};
