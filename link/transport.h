// The line between a connection and its phone, as the connection sees it.
#pragma once

#include <span>

#include "link/message_queue.h"
#include "platform/port_error.h"
#include "platform/types.h"

class CQLibEventListener;
class CQLibEvents_Filter;
class CQLibEvents_Listener;
class DataLogFileHandler;

/// What a connection lends its line; all of it outlives the line.
struct LineOwner {
    DataLogFileHandler& log;
    CQLibEventListener& listener; // receives every packet that arrives
    CQLibMessageQueue& responses; // where the listener puts command responses
};

/// One request, and how to recognise its response.
struct LineRequest {
    std::span<const unsigned char> bytes; // without framing, at least one byte
    unsigned char iExpectedCode;          // first byte of the response over a port server
    bool bOwnCode;                        // over a serial line the response has the first byte of the request
    DWORD iTimeOut_ms;
    DWORD iReadDelay_ms; // between writing and waiting; unused over a port server

    /// The first byte of the response over a serial line.
    unsigned char SerialCode() const { return bOwnCode ? bytes.front() : iExpectedCode; }
};

/// A response as it arrived. iLength excludes the FCS, which `item` may hold after the response.
struct LineResponse {
    QueueItem item;
    unsigned short iLength;
};

/// SerialControls has the operations that only a serial line offers. The line is open unless stated
/// otherwise.
class SerialControls {
public:
    /// Write sends one packet without waiting. True when every byte was written.
    virtual bool Write(std::span<const unsigned char> packet, DWORD iTimeOut_ms, bool bForceStartFlag) = 0;
    /// ExchangeText sends one packet; the next packet to arrive is the reply, whatever it is. While it waits
    /// in raw packet mode, replies are cut after "OK" and "ERROR". After a failure they continue to be cut
    /// until a later ExchangeText gets its reply.
    virtual bool ExchangeText(const LineRequest& request, QueueItem& reply) = 0;
    /// SetStartFlag returns the previous setting.
    virtual bool SetStartFlag(bool bStartFlag) = 0;
    /// The packet mode: 0 framed, otherwise raw. Allowed on a closed line.
    virtual int GetPacketMode() const = 0;
    virtual void SetPacketMode(int iPacketMode) = 0;
    /// The modem lines, and discarding an incomplete packet. Allowed on a closed line.
    virtual void SetDTR(bool bHigh) = 0;
    virtual void SetRTS(bool bHigh) = 0;
    virtual void FlushRxBuffer() = 0;

protected:
    ~SerialControls() = default;
};

/// Transport is one line to one phone: a serial line, or the path through a port server. The connection owns
/// it and calls it from its caller's thread. Packets reach the owner's listener on a thread of the line.
///
/// No operation throws. False means failure; the owner's log holds the reason of a failed exchange.
class Transport {
public:
    Transport() = default;
    virtual ~Transport();
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

    /// Start is called first. From then on the line may use what its owner lends it.
    virtual void Start(const LineOwner& owner) = 0;
    /// Stop is called last: it closes the line, after which nothing more is delivered.
    virtual void Stop() = 0;

    /// Open opens the line; no effect when it is open. iServerTimeOut_ms limits the connection to a port
    /// server and is unused over a serial line.
    virtual bool Open(DWORD iServerTimeOut_ms) = 0;
    virtual void Close() = 0;
    /// LastError returns why the last Open of a serial port failed; None after success and over a port
    /// server.
    virtual PortError LastError() const = 0;

    /// OpensOnDemand returns whether a request must open a closed line first. If not, requests go to the line
    /// even when it is closed, and it refuses them.
    virtual bool OpensOnDemand() const = 0;

    /// Exchange sends a request and waits for its response. On false `response` is undefined.
    virtual bool Exchange(const LineRequest& request, LineResponse& response) = 0;

    /// SwitchToDiagMode tries to switch a phone from AT data mode to diagnostic mode. Takes up to
    /// kDiagModeTries * kDiagModeTry_ms.
    virtual bool SwitchToDiagMode() = 0;

    /// AddListener registers an observer of every packet, called after the owner's listener. False when the
    /// line does not support observers.
    virtual bool AddListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter) = 0;
    virtual void RemoveListener(CQLibEvents_Listener* pListener) = 0;

    /// The controls of a serial line; null for any other line.
    virtual SerialControls* Serial() = 0;
};
