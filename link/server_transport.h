// The way of a connection's requests through a port server, as the connection sees it.
#pragma once

#include <span>
#include <string>

#include "link/event_dispatcher.h"
#include "link/message_queue.h"
#include "platform/export.h"
#include "platform/types.h"

/// ServerTransport is a port server's side of a connection in server mode. The connection calls it on its
/// caller's thread and does not own it; it must outlive the connection. Nothing is thrown: on false sReason
/// says what went wrong.
class QUILLET_API ServerTransport {
public:
    virtual ~ServerTransport();

    /// ConnectPort connects to a COM port that the server owns. May be repeated, also for another port.
    virtual bool ConnectPort(int iComPort, DWORD iTimeOut_ms, std::string& sReason) noexcept = 0;

    /// Exchange sends a request (command code and fields, no framing) and receives its answer in `response`,
    /// without FCS and cut to what an item holds. False when there was none in time.
    virtual bool Exchange(std::span<const unsigned char> request, DWORD iTimeOut_ms, QueueItem& response,
                          std::string& sReason) noexcept = 0;

    /// Listen lets the listener see packets that the phone sends by itself, on a thread of the server's
    /// path, until StopListening, which waits for a delivery that is under way. Both do nothing when there
    /// is nothing to do.
    virtual void Listen(CQLibEvents_Listener* pListener) noexcept = 0;
    virtual void StopListening(CQLibEvents_Listener* pListener) noexcept = 0;
};
