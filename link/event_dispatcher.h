// Delivery of received packets to listeners, in order, on a thread of its own.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <span>
#include <thread>
#include <utility>
#include <vector>

#include "platform/export.h"
#include "platform/types.h"

class CQLibEventListener;

/// One posted packet and its four extra values (all 0 for packets of the serial link).
struct CQLibEvent {
    DWORD iLength = 0;
    std::unique_ptr<unsigned char[]> pData;
    unsigned int iValue3 = 0;
    LONG iValue4 = 0;
    short iValue5 = 0;
    DWORD iValue6 = 0;
};

/// An observer of received packets. messageReceived runs on the delivery thread and should return soon: all
/// later packets, responses included, wait for it. The data (iLength bytes, including the two FCS bytes)
/// belongs to the dispatcher and is valid during the call only.
class QUILLET_API CQLibEvents_Listener {
public:
    virtual ~CQLibEvents_Listener();
    /// messageReceived receives one packet. The last four values are those of CQLibEvent.
    virtual void messageReceived(LONG iLength, unsigned char* pData, unsigned int iValue3, LONG iValue4,
                                 short iValue5, DWORD iValue6) = 0;
};

/// Decides which packets reach its listener.
class QUILLET_API CQLibEvents_Filter {
public:
    virtual ~CQLibEvents_Filter();
    /// Returns whether the packet is delivered.
    virtual bool acceptMessage(LONG iLength, unsigned char* pData, unsigned int iValue3, LONG iValue4,
                               short iValue5, DWORD iValue6) = 0;
};

/// CQLibEventDispatcher queues posted packets and delivers each, in the order of posting, to every listener
/// in the order of registration.
///
/// A connection's packets need no delivery thread as long as nobody but the connection itself receives them.
/// Its dispatcher then passes them to the connection's listener on the thread that read them. Order is kept:
/// this happens only when no earlier packet is queued or being delivered.
///
/// Locks: the queue lock guards the posted packets, the list lock the listeners. Listeners run under the list
/// lock, so they must not add or remove listeners. No other lock is taken while the queue lock is held.
class QUILLET_API CQLibEventDispatcher {
public:
    CQLibEventDispatcher();
    /// Calls Stop.
    virtual ~CQLibEventDispatcher();
    CQLibEventDispatcher(const CQLibEventDispatcher&) = delete;
    CQLibEventDispatcher& operator=(const CQLibEventDispatcher&) = delete;

    /// AddListener registers a listener with an optional filter (null: every packet). The first call starts
    /// the delivery thread.
    virtual void AddListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter);
    /// RemoveListener removes the first registration of a listener, which is not called afterwards.
    virtual void RemoveListener(CQLibEvents_Listener* pListener);
    /// AddConnectionListener is AddListener for the listener of the connection itself, which may receive
    /// packets on the thread that reads them. Called once, before the first packet.
    void AddConnectionListener(CQLibEventListener* pListener);
    /// StartDelivery starts the delivery thread if it is not running; false when the system cannot create
    /// one. AddListener calls it and ignores the result.
    bool StartDelivery();
    /// Stop ends the delivery and waits for the thread: the packet being delivered is completed, the others
    /// are dropped. Called last before destruction.
    virtual void Stop();
    /// OnThreadStart, OnThreadExit run first and last on the delivery thread; false from OnThreadStart ends
    /// the thread at once. A class that overrides them must call Stop in its destructor.
    virtual bool OnThreadStart();
    virtual bool OnThreadExit();

    /// PostEvent queues a copy of the packet; any thread may call it. Always 0.
    int PostEvent(DWORD iLength, const unsigned char* pData, unsigned int iValue3 = 0, LONG iValue4 = 0,
                  short iValue5 = 0, DWORD iValue6 = 0);

    /// HandOver passes a packet to the connection's listener at once if IsDirect, and posts it otherwise. One
    /// thread at a time may call it, and nobody else may post.
    void HandOver(std::span<unsigned char> packet);
    /// IsDirect returns whether the connection's listener is the only receiver and has received every packet
    /// so far. It may change at any time when others add listeners or callbacks.
    bool IsDirect();

private:
    bool HasDelivered();
    bool PassDirectly(std::span<unsigned char> packet);
    void Deliver();
    bool TakeEvent(CQLibEvent& event);
    void HandToListeners(const CQLibEvent& event);

    std::mutex m_queueLock;
    std::condition_variable m_posted;
    std::deque<CQLibEvent> m_events;
    bool m_bStop = false;
    bool m_bDelivering = false; // an event taken from the queue

    std::mutex m_listLock;
    std::vector<std::pair<CQLibEvents_Listener*, CQLibEvents_Filter*>> m_listeners;
    CQLibEventListener* m_pConnectionListener = nullptr;
    std::thread m_thread;
};
