// Diagnostic requests, NV items and the lists of ports and phones through a port server.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/export.h"
#include "portserver/server_client.h"

class CQLibEvents_Listener;
class PacketListeners;

/// QpstServer is the client of a port server that exchanges packets with one phone. Operations throw:
/// ServerException with the reason, or ComThreadManager::TimeoutException when the server does not come back
/// (kGrace_ms after the operation's own time-out).
///
/// One thread at a time; each operation blocks until the server has answered.
class QUILLET_API QpstServer : public Dispatched<QpstServer, ServerClient> {
public:
    /// Throws when there is no automation thread to be had. The server is started by the first operation.
    explicit QpstServer(const char* sClientName);
    /// Listeners are not called any more afterwards.
    ~QpstServer() override;

    /// connect starts the server and selects a COM port (65535: none in particular). May be repeated, also
    /// for another port. Everything but the lists and the listeners needs it.
    void connect(unsigned short iComPort, DWORD iTimeOut_ms);

    /// sendSync exchanges one packet without framing. *piResponseSize in: capacity of piResponse; out: bytes
    /// written. Throws "Timeout waiting for response" when the phone does not answer; both are unchanged
    /// then.
    void sendSync(unsigned short iRequestSize, const unsigned char* piRequest, unsigned short* piResponseSize,
                  unsigned char* piResponse, DWORD iTimeOut_ms);
    /// readNv fills piData (iLength bytes) with an NV item, rest zero; writeNv writes one. False when the
    /// phone refuses.
    bool readNv(unsigned short iItem, unsigned char* piData, unsigned short iLength);
    bool writeNv(unsigned short iItem, const unsigned char* piData, unsigned short iLength);

    /// Phone control: false when the phone refuses.
    bool offline();
    bool lock();
    bool unlock();
    bool sendSpc(const char* sSpc);
    bool sendTmob(const char* sText);
    /// detectBadPhoneMode: true when the phone is in a mode that needs repair.
    bool detectBadPhoneMode();
    /// getDiagVerno writes the version of the phone's diagnostic protocol.
    bool getDiagVerno(DWORD& iVersion);
    /// reset restarts the phone and waits until it answers again. Throws when it does not within iTimeOut_ms.
    void reset(DWORD iTimeOut_ms);

    /// The names of the server's ports ("COM5"), and its phones.
    std::vector<std::string> getPortList();
    std::vector<PhoneEntry> getPhoneList();

    /// addEventListener lets pListener see the packets that the phone sends by itself (with two FCS bytes),
    /// on a thread of the server's, until removeEventListener, which waits for a delivery that is under way.
    /// A listener must not add or remove listeners.
    void addEventListener(CQLibEvents_Listener* pListener);
    void removeEventListener(CQLibEvents_Listener* pListener);

private:
    friend class FunctionDispatcherHelper<QpstServer>;

    QpstServer(const QpstServer& other) : Dispatched(other) {}
    bool Control(const char* sName, PhoneControl eControl, const char* sText, DWORD* piValue = nullptr);
    void sendSyncImpl(void* pCall);
    void readNvImpl(void* pCall);
    void writeNvImpl(void* pCall);
    void controlImpl(void* pCall);
    void resetImpl(void* pCall);
    void getPortListImpl(void* pCall);
    void getPhoneListImpl(void* pCall);

    std::shared_ptr<PacketListeners> m_pListeners; // the server holds it too; null in a copy
};

extern template class FunctionDispatcherHelper<QpstServer>;
