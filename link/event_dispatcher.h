// Delivery of received packets to listeners, in order, on a thread of its own.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/export.h"
#include "platform/types.h"

/// One posted packet and the four values that travel with it (all 0 for packets of the serial link).
struct CQLibEvent {
    DWORD iLength = 0;
    std::unique_ptr<unsigned char[]> pData;
    unsigned int iValue3 = 0;
    LONG iValue4 = 0;
    short iValue5 = 0;
    DWORD iValue6 = 0;
};

/// An observer of received packets. messageReceived runs on the delivery thread and should return soon: it
/// holds up all later packets, responses included. The data (iLength bytes, the two FCS bytes included)
/// belongs to the dispatcher and is gone after the call.
class QUILLET_API CQLibEvents_Listener {
public:
    virtual ~CQLibEvents_Listener();
    virtual void messageReceived(LONG iLength, unsigned char* pData, unsigned int iValue3, LONG iValue4,
                                 short iValue5, DWORD iValue6) = 0;
};

/// Decides which packets reach the listener that it is paired with.
class QUILLET_API CQLibEvents_Filter {
public:
    virtual ~CQLibEvents_Filter();
    /// True lets the packet through.
    virtual bool acceptMessage(LONG iLength, unsigned char* pData, unsigned int iValue3, LONG iValue4,
                               short iValue5, DWORD iValue6) = 0;
};

/// CQLibEventDispatcher queues posted packets and hands each, in the order posted, to every listener in
/// the order of registration.
///
/// Locks: the queue lock guards the posted packets, the list lock the listeners; listeners run under the
/// list lock, so a listener must not add or remove listeners. The queue lock is never held while another
/// lock is taken.
class QUILLET_API CQLibEventDispatcher {
public:
    CQLibEventDispatcher();
    /// Stops, when Stop was not called.
    virtual ~CQLibEventDispatcher();
    CQLibEventDispatcher(const CQLibEventDispatcher&) = delete;
    CQLibEventDispatcher& operator=(const CQLibEventDispatcher&) = delete;

    /// AddListener registers a listener with an optional filter (null: everything). The first call starts
    /// the delivery thread.
    virtual void AddListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter);
    /// RemoveListener removes the first registration of that listener; afterwards it is not called any more.
    virtual void RemoveListener(CQLibEvents_Listener* pListener);
    /// StartDelivery starts the delivery thread when it does not run; false when the system has no thread to
    /// spare. AddListener does so too, without a result.
    bool StartDelivery();
    /// Stop ends the delivery: the packet in delivery is finished, the others are not delivered. Waits for
    /// the thread. Last operation before destruction.
    virtual void Stop();
    /// OnThreadStart, OnThreadExit run on the delivery thread at its begin and end; false from the first
    /// ends the thread at once. (Overrides must call Stop in their own destructor.)
    virtual bool OnThreadStart();
    virtual bool OnThreadExit();

    /// PostEvent queues a copy of the packet; any thread may call it. Returns 0.
    int PostEvent(DWORD iLength, const unsigned char* pData, unsigned int iValue3 = 0, LONG iValue4 = 0,
                  short iValue5 = 0, DWORD iValue6 = 0);

private:
    void Deliver();
    bool TakeEvent(CQLibEvent& event);
    void HandToListeners(const CQLibEvent& event);

    std::mutex m_queueLock;
    std::condition_variable m_posted;
    std::deque<CQLibEvent> m_events;
    bool m_bStop = false;

    std::mutex m_listLock;
    std::vector<std::pair<CQLibEvents_Listener*, CQLibEvents_Filter*>> m_listeners;
    std::thread m_thread;
};
