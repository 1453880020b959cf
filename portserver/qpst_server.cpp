#include "portserver/qpst_server.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "link/delivered_packet.h"
#include "link/event_dispatcher.h"

/// PacketListeners delivers the server's packets to the listeners, under its lock.
class PacketListeners : public PacketEvents {
public:
    void packetReceived(std::span<unsigned char> packet) override {
        const auto pCopy = CopyForDelivery(packet);
        const std::lock_guard lock(m_lock);
        for (CQLibEvents_Listener* const pListener : m_listeners)
            pListener->messageReceived(static_cast<LONG>(packet.size()), pCopy.get(), 0, 0, 0, 0);
    }
    void Add(CQLibEvents_Listener* pListener) {
        const std::lock_guard lock(m_lock);
        if (std::find(m_listeners.begin(), m_listeners.end(), pListener) == m_listeners.end())
            m_listeners.push_back(pListener);
    }
    void Remove(CQLibEvents_Listener* pListener) {
        const std::lock_guard lock(m_lock);
        std::erase(m_listeners, pListener);
    }
    void RemoveAll() {
        const std::lock_guard lock(m_lock);
        m_listeners.clear();
    }

private:
    std::mutex m_lock;
    std::vector<CQLibEvents_Listener*> m_listeners; // under m_lock
};

namespace {

using Bytes = std::vector<unsigned char>;

struct SyncCall {
    Bytes request;
    DWORD iTimeOut_ms;
    bool bAnswered = false; // out
    Bytes response = {};    // out
};

/// The two requests of the phone check do not change the phone, so they may be sent twice.
bool IsPhoneCheck(const Bytes& request) {
    return !request.empty() && (request[0] == kLoopbackRequest || request[0] == kVersionRequest);
}

struct NvCall {
    unsigned short iItem;
    Bytes data; // in or out
    bool bDone = false;
};

struct ControlCall {
    PhoneControl eControl;
    std::string sText;
    bool bDone = false;
    DWORD iValue = 0;
};

struct ResetCall {
    DWORD iTimeOut_ms;
    ResetOutcome eOutcome = ResetOutcome::NeverReset;
};

} // namespace

QpstServer::QpstServer(const char* sClientName, std::shared_ptr<ComThreadManager> pComThread)
    : Dispatched("QpstServer", sClientName, std::move(pComThread)),
      m_pListeners(std::make_shared<PacketListeners>()) {
    WantPackets(m_pListeners);
}

QpstServer::~QpstServer() {
    if (m_pListeners != nullptr)
        m_pListeners->RemoveAll();
}

ServerFault QpstServer::TryConnect(unsigned short iComPort, DWORD iTimeOut_ms) noexcept {
    return ServerFault::Of([&] { ConnectTo(PortName(iComPort), iTimeOut_ms); });
}

ServerFault QpstServer::TrySendSync(unsigned short iRequestSize, const unsigned char* piRequest,
                                    unsigned short* piResponseSize, unsigned char* piResponse,
                                    DWORD iTimeOut_ms) noexcept {
    return ServerFault::Of([&] {
        const auto pCall =
            std::make_shared<SyncCall>(SyncCall{Bytes(piRequest, piRequest + iRequestSize), iTimeOut_ms});
        const auto exchange = [&] {
            RequireServer("sendSync");
            Execute("sendSync", &QpstServer::sendSyncImpl, pCall, WithGrace(iTimeOut_ms));
        };
        if (IsPhoneCheck(pCall->request))
            TwiceIfLost(exchange);
        else
            exchange();
        if (!pCall->bAnswered)
            throw ServerException("Timeout waiting for response");
        *piResponseSize =
            static_cast<unsigned short>(std::min<size_t>(*piResponseSize, pCall->response.size()));
        std::copy_n(pCall->response.begin(), *piResponseSize, piResponse);
    });
}

void QpstServer::sendSyncImpl(void* pArgument) {
    SyncCall& call = *static_cast<SyncCall*>(pArgument);
    call.bAnswered = Server().sendSync(call.request, call.iTimeOut_ms, call.response);
}

ServerFault QpstServer::TryReadNv(unsigned short iItem, unsigned char* piData, unsigned short iLength,
                                  bool& bDone) noexcept {
    return ServerFault::Of([&] {
        RequireServer("readNv");
        const auto pCall = std::make_shared<NvCall>(NvCall{iItem, {}});
        Execute("readNv", &QpstServer::readNvImpl, pCall, kCallLimit_ms);
        bDone = pCall->bDone;
        if (!bDone)
            return;
        pCall->data.resize(iLength);
        std::copy(pCall->data.begin(), pCall->data.end(), piData);
    });
}

void QpstServer::readNvImpl(void* pArgument) {
    NvCall& call = *static_cast<NvCall*>(pArgument);
    call.bDone = Server().readNv(call.iItem, call.data);
}

ServerFault QpstServer::TryWriteNv(unsigned short iItem, const unsigned char* piData, unsigned short iLength,
                                   bool& bDone) noexcept {
    return ServerFault::Of([&] {
        RequireServer("writeNv");
        const auto pCall = std::make_shared<NvCall>(NvCall{iItem, Bytes(piData, piData + iLength)});
        Execute("writeNv", &QpstServer::writeNvImpl, pCall, kCallLimit_ms);
        bDone = pCall->bDone;
    });
}

void QpstServer::writeNvImpl(void* pArgument) {
    NvCall& call = *static_cast<NvCall*>(pArgument);
    call.bDone = Server().writeNv(call.iItem, call.data);
}

ServerFault QpstServer::TryControl(const char* sName, PhoneControl eControl, const char* sText,
                                   DWORD* piValue, bool& bDone) noexcept {
    return ServerFault::Of([&] {
        RequireServer(sName);
        const auto pCall =
            std::make_shared<ControlCall>(ControlCall{eControl, sText != nullptr ? sText : ""});
        Execute(sName, &QpstServer::controlImpl, pCall, kCallLimit_ms);
        bDone = pCall->bDone;
        if (bDone && piValue != nullptr)
            *piValue = pCall->iValue;
    });
}

void QpstServer::controlImpl(void* pArgument) {
    ControlCall& call = *static_cast<ControlCall*>(pArgument);
    call.bDone = Server().control(call.eControl, call.sText, call.iValue);
}

ServerFault QpstServer::TryReset(DWORD iTimeOut_ms) noexcept {
    return ServerFault::Of([&] {
        RequireServer("reset");
        const auto pCall = std::make_shared<ResetCall>(ResetCall{iTimeOut_ms});
        Execute("reset", &QpstServer::resetImpl, pCall, WithGrace(iTimeOut_ms));
        if (pCall->eOutcome == ResetOutcome::NeverReset)
            throw ServerException("QpstServer::reset - The phone never reset.");
        if (pCall->eOutcome == ResetOutcome::NeverRecovered)
            throw ServerException("QpstServer::reset - The phone never recovered from the reset");
    });
}

void QpstServer::resetImpl(void* pArgument) {
    ResetCall& call = *static_cast<ResetCall*>(pArgument);
    call.eOutcome = Server().reset(call.iTimeOut_ms);
}

ServerFault QpstServer::TryGetPortList(std::vector<std::string>& names) noexcept {
    return ServerFault::Of([&] {
        const auto pNames = std::make_shared<std::vector<std::string>>();
        TwiceIfLost([&] {
            Initialize();
            Execute("getPortList", &QpstServer::getPortListImpl, pNames, kCallLimit_ms);
        });
        names = std::move(*pNames);
    });
}

void QpstServer::getPortListImpl(void* pArgument) {
    *static_cast<std::vector<std::string>*>(pArgument) = Server().portNames();
}

ServerFault QpstServer::TryGetPhoneList(std::vector<PhoneEntry>& phones) noexcept {
    return ServerFault::Of([&] {
        const auto pPhones = std::make_shared<std::vector<PhoneEntry>>();
        TwiceIfLost([&] {
            Initialize();
            Execute("getPhoneList", &QpstServer::getPhoneListImpl, pPhones, kCallLimit_ms);
        });
        phones = std::move(*pPhones);
    });
}

void QpstServer::getPhoneListImpl(void* pArgument) {
    *static_cast<std::vector<PhoneEntry>*>(pArgument) = Server().phones();
}

void QpstServer::addEventListener(CQLibEvents_Listener* pListener) {
    if (pListener != nullptr)
        m_pListeners->Add(pListener);
}

void QpstServer::removeEventListener(CQLibEvents_Listener* pListener) {
    m_pListeners->Remove(pListener);
}
