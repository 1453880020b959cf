// Diagnostic requests, NV items and the lists of ports and phones through a port server.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/export.h"
#include "portserver/server_client.h"

class CQLibEvents_Listener;
class PacketListeners;

/// QpstServer is the client of a port server that exchanges packets with one phone. Operations throw
/// ServerException with the reason, or ComThreadManager::TimeoutException when the server does not return
/// within the operation's own time-out plus kGrace_ms.
///
/// One thread at a time; each operation blocks until the server has responded.
///
/// Operations that throw have their bodies here, so that they throw in the caller's module (see ServerFault);
/// the library's part is a Try... member.
class QUILLET_API QpstServer : public Dispatched<QpstServer, ServerClient> {
public:
    /// Throws when no automation thread can be created. The server is started by the first operation.
    QUILLET_API_INLINE explicit QpstServer(const char* sClientName)
        : QpstServer(sClientName, ComThreadManager::Use()) {}
    /// Listeners are not called afterwards.
    ~QpstServer() override;

    /// connect starts the server and selects a COM port (65535: no particular port). May be called again,
    /// also for another port. Required before all operations but the lists and the listeners.
    QUILLET_API_INLINE void connect(unsigned short iComPort, DWORD iTimeOut_ms) {
        TryConnect(iComPort, iTimeOut_ms).Raise();
    }

    /// sendSync exchanges one packet without framing. *piResponseSize in: capacity of piResponse; out: bytes
    /// written. When the phone does not respond, throws "Timeout waiting for response" and changes neither.
    QUILLET_API_INLINE void sendSync(unsigned short iRequestSize, const unsigned char* piRequest,
                                     unsigned short* piResponseSize, unsigned char* piResponse,
                                     DWORD iTimeOut_ms) {
        TrySendSync(iRequestSize, piRequest, piResponseSize, piResponse, iTimeOut_ms).Raise();
    }
    /// readNv reads an NV item into piData (iLength bytes, padded with zeros); writeNv writes one. False when
    /// the phone refuses.
    QUILLET_API_INLINE bool readNv(unsigned short iItem, unsigned char* piData, unsigned short iLength) {
        bool bDone = false;
        TryReadNv(iItem, piData, iLength, bDone).Raise();
        return bDone;
    }
    QUILLET_API_INLINE bool writeNv(unsigned short iItem, const unsigned char* piData,
                                    unsigned short iLength) {
        bool bDone = false;
        TryWriteNv(iItem, piData, iLength, bDone).Raise();
        return bDone;
    }

    /// offline, lock, unlock, sendSpc, sendTmob control the phone: false when it refuses. The texts are the
    /// service programming code and what the server passes on.
    QUILLET_API_INLINE bool offline() { return Control("offline", PhoneControl::Offline); }
    QUILLET_API_INLINE bool lock() { return Control("lock", PhoneControl::Lock); }
    QUILLET_API_INLINE bool unlock() { return Control("unlock", PhoneControl::Unlock); }
    QUILLET_API_INLINE bool sendSpc(const char* sSpc) {
        return Control("sendSpc", PhoneControl::SendSpc, sSpc);
    }
    QUILLET_API_INLINE bool sendTmob(const char* sText) {
        return Control("sendTmob", PhoneControl::SendTmob, sText);
    }
    /// detectBadPhoneMode returns true when the phone is in a mode that needs repair.
    QUILLET_API_INLINE bool detectBadPhoneMode() {
        return Control("detectBadPhoneMode", PhoneControl::DetectBadPhoneMode);
    }
    /// getDiagVerno stores the version of the phone's diagnostic protocol.
    QUILLET_API_INLINE bool getDiagVerno(DWORD& iVersion) {
        return Control("getDiagVerno", PhoneControl::GetDiagVerno, nullptr, &iVersion);
    }
    /// reset restarts the phone and waits until it responds again. Throws when that takes more than
    /// iTimeOut_ms.
    QUILLET_API_INLINE void reset(DWORD iTimeOut_ms) { TryReset(iTimeOut_ms).Raise(); }

    /// getPortList returns the names of the server's ports ("COM5"), getPhoneList its phones.
    QUILLET_API_INLINE std::vector<std::string> getPortList() {
        std::vector<std::string> names;
        TryGetPortList(names).Raise();
        return names;
    }
    QUILLET_API_INLINE std::vector<PhoneEntry> getPhoneList() {
        std::vector<PhoneEntry> phones;
        TryGetPhoneList(phones).Raise();
        return phones;
    }

    /// addEventListener registers pListener for unsolicited packets of the phone (with two FCS bytes), which
    /// it receives on a thread of the server. removeEventListener waits for a delivery in progress. A
    /// listener must not add or remove listeners.
    void addEventListener(CQLibEvents_Listener* pListener);
    void removeEventListener(CQLibEvents_Listener* pListener);

private:
    friend class FunctionDispatcherHelper<QpstServer>;

    QpstServer(const char* sClientName, std::shared_ptr<ComThreadManager> pComThread);
    QpstServer(const QpstServer& other) : Dispatched(other) {}

    bool Control(const char* sName, PhoneControl eControl, const char* sText = nullptr,
                 DWORD* piValue = nullptr) {
        bool bDone = false;
        TryControl(sName, eControl, sText, piValue, bDone).Raise();
        return bDone;
    }
    ServerFault TryConnect(unsigned short iComPort, DWORD iTimeOut_ms) noexcept;
    ServerFault TrySendSync(unsigned short iRequestSize, const unsigned char* piRequest,
                            unsigned short* piResponseSize, unsigned char* piResponse,
                            DWORD iTimeOut_ms) noexcept;
    ServerFault TryReadNv(unsigned short iItem, unsigned char* piData, unsigned short iLength,
                          bool& bDone) noexcept;
    ServerFault TryWriteNv(unsigned short iItem, const unsigned char* piData, unsigned short iLength,
                           bool& bDone) noexcept;
    ServerFault TryControl(const char* sName, PhoneControl eControl, const char* sText, DWORD* piValue,
                           bool& bDone) noexcept;
    ServerFault TryReset(DWORD iTimeOut_ms) noexcept;
    ServerFault TryGetPortList(std::vector<std::string>& names) noexcept;
    ServerFault TryGetPhoneList(std::vector<PhoneEntry>& phones) noexcept;

    void sendSyncImpl(void* pCall);
    void readNvImpl(void* pCall);
    void writeNvImpl(void* pCall);
    void controlImpl(void* pCall);
    void resetImpl(void* pCall);
    void getPortListImpl(void* pCall);
    void getPhoneListImpl(void* pCall);

    std::shared_ptr<PacketListeners> m_pListeners; // shared with the server; null in a copy
};

extern template class FunctionDispatcherHelper<QpstServer>;
