// The line between a connection and its handset, as the connection sees it.
#pragma once

#include <span>

#include "link/message_queue.h"
#include "platform/port_error.h"
#include "platform/types.h"

class CQLibEventListener;
class CQLibEvents_Filter;
class CQLibEvents_Listener;
class DataLogFileHandler;

/// What a connection lends its line. All of it outlives the line.
struct LineOwner {
    DataLogFileHandler& log;
    CQLibEventListener& listener; // receives every packet that arrives
    CQLibMessageQueue& responses; // where the listener leaves command responses
};

/// One request and how to recognise its response.
struct LineRequest {
    std::span<const unsigned char> bytes; // without framing, at least one byte
    unsigned char iExpectedCode;          // first byte of the response, over a port server
    bool bOwnCode; // over a serial line the response begins with the request's first byte
    DWORD iTimeOut_ms;
    DWORD iReadDelay_ms; // between writing and waiting; a port server does not use it

    /// The first byte of the response over a serial line.
    unsigned char SerialCode() const { return bOwnCode ? bytes.front() : iExpectedCode; }
};

/// A response as it arrived. iLength counts its bytes without an FCS; the item may hold one after them.
struct LineResponse {
    QueueItem item;
    unsigned short iLength;
};

/// SerialControls is what only a serial line can do. The line is open unless noted.
class SerialControls {
public:
    /// Write sends one packet and does not wait. True when every byte went out.
    virtual bool Write(std::span<const unsigned char> packet, DWORD iTimeOut_ms, bool bForceStartFlag) = 0;
    /// ExchangeText sends one packet and takes the next packet, whatever it is. While it waits, replies in
    /// raw packet mode are cut at "OK" and "ERROR". After a failure they go on being cut until a later
    /// ExchangeText gets its reply.
    virtual bool ExchangeText(const LineRequest& request, QueueItem& reply) = 0;
    /// SetStartFlag returns the setting before.
    virtual bool SetStartFlag(bool bStartFlag) = 0;
    /// The packet mode: 0 framed, otherwise raw. The line may be closed.
    virtual int GetPacketMode() const = 0;
    virtual void SetPacketMode(int iPacketMode) = 0;
    /// The modem lines and the bytes of an incomplete packet. The line may be closed.
    virtual void SetDTR(bool bHigh) = 0;
    virtual void SetRTS(bool bHigh) = 0;
    virtual void FlushRxBuffer() = 0;

protected:
    ~SerialControls() = default;
};

/// Transport is one line to one handset: a serial line of its own, or the way through a port server. The
/// connection owns it and calls it from its caller's thread; packets reach the owner's listener on a thread
/// of the line's.
///
/// Nothing is thrown. False means that it did not work; the reason is in the owner's log.
class Transport {
public:
    Transport() = default;
    virtual ~Transport();
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

    /// Start is the first call. From now on the line may use what its owner lends it.
    virtual void Start(const LineOwner& owner) = 0;
    /// Stop is the last call: the line is closed, and nothing more is delivered.
    virtual void Stop() = 0;

    /// Open opens the line. Does nothing when it is open already. iServerTimeOut_ms bounds the way to a port
    /// server; a serial line does not use it.
    virtual bool Open(DWORD iServerTimeOut_ms) = 0;
    virtual void Close() = 0;
    /// LastError says why the last Open of a serial port failed; None when it did not, and over a port
    /// server.
    virtual PortError LastError() const = 0;

    /// OpensOnDemand: a request on a closed line opens it first. Otherwise the line takes requests always and
    /// refuses them itself.
    virtual bool OpensOnDemand() const = 0;

    /// Exchange sends a request and waits for its response. On false `response` means nothing.
    virtual bool Exchange(const LineRequest& request, LineResponse& response) = 0;

    /// SwitchToDiagMode tries to bring a phone that is in AT data mode into diagnostic mode. Takes up to
    /// kDiagModeTries * kDiagModeTry_ms.
    virtual bool SwitchToDiagMode() = 0;

    /// AddListener registers an observer of every packet, after the owner's listener; false when the line
    /// supports none.
    virtual bool AddListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter) = 0;
    virtual void RemoveListener(CQLibEvents_Listener* pListener) = 0;

    /// The controls of a serial line; null for any other.
    virtual SerialControls* Serial() = 0;
};
