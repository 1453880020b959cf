// The connection's own listener: sorts received packets into responses and unsolicited traffic.
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
/// enabled, log records, debug messages and event reports into the phone-log (async) queue. It owns
/// neither queue. Records of the radio tests also go into its status blocks, phone logging or not.
/// messageReceived runs on the delivery thread, everything else on the caller's. Under
/// LOG_ASYNC it writes extended debug messages and the names of events as text.
class QUILLET_API CQLibEventListener : public CQLibEvents_Listener {
public:
    CQLibEventListener(CQLibMessageQueue* pAsyncQueue, CQLibMessageQueue* pSyncQueue);
    ~CQLibEventListener() override;

    void messageReceived(LONG iLength, unsigned char* pData, unsigned int iValue3, LONG iValue4,
                         short iValue5, DWORD iValue6) override;

    /// ReceivePacket is messageReceived for a packet of a recording, on the caller's thread: there a single
    /// byte may be all that is left of a packet, so it is put into its queue (but not shown to the callback).
    void ReceivePacket(std::span<unsigned char> packet);

    /// ConfigureAsyncMessageCallBack registers the callback (null: none). It runs outside every lock but
    /// the dispatcher's; a call that has begun may still run when this returns.
    void ConfigureAsyncMessageCallBack(void* pUserData, AsyncMessageCallBack pfnCallBack);
    CQLibMessageQueue* GetAsyncQueue() const { return m_pAsyncQueue; }
    CQLibMessageQueue* GetSyncQueue() const { return m_pSyncQueue; }
    /// SetLoggingEnabled lets unsolicited traffic into the phone-log queue (off at first: it is dropped).
    void SetLoggingEnabled(bool bEnabled) { m_bPhoneLoggingEnabled = bEnabled; }
    /// SetDataLogHandler attaches the text log (null: none).
    void SetDataLogHandler(DataLogFileHandler* pLogHandler) { m_pLogHandler = pLogHandler; }

    // --- Radio tests: any thread; always true -------------------------------------------------------

    /// ..._ClearStatus forgets which records have arrived (RadioTestBlocks says what else is cleared),
    /// ..._GetStatus copies a status block.
    bool FTM_GSM_BER_ClearStatus();
    bool FTM_GSM_BER_GetStatus(GSM_BER_State* pState);
    bool FTM_EGPRS_BER_ClearStatus();
    bool FTM_EGPRS_BER_GetStatus(EGPRS_BER_State* pState);
    bool FTM_WCDMA_BER_ClearStatus();
    bool FTM_WCDMA_BER_GetStatus(WCDMA_BER_State* pState);
    bool FTM_HSDPA_BER_ClearStatus();
    bool FTM_HSDPA_BER_GetStatus(HSDPA_BER_State* pState);
    /// RadioTests: the status blocks themselves, to wait for.
    RadioTestStatus& RadioTests() { return *m_pRadioTests; }

private:
    void CallBack(std::span<unsigned char> packet);
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
