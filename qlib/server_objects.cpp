// The port-server objects of contexts, and the lists read from a port server.
#include <memory>
#include <utility>

#include "portserver/efs.h"
#include "portserver/qpst_server.h"
#include "portserver/software_download.h"
#include "qlib/diag_ftm.h"
#include "qlib/or_null.h"
#include "qlib/resource_manager.h"

QpstServer* QLib_ResourceManager::m_pInfoServer = nullptr;

namespace {

constexpr DWORD kConnectTimeOut_ms = 200;

// A client that could not connect is discarded.
template <class Client>
std::unique_ptr<Client> Connected(std::unique_ptr<Client> pClient, unsigned short iComPort) {
    return pClient->connect(iComPort) ? std::move(pClient) : nullptr;
}

} // namespace

QLib_ResourceContext* QLib_ResourceManager::GetServerEntry(void* hContext) {
    return m_bIsUsingQpst ? GetResourceEntry(hContext) : nullptr;
}

QpstServer* QLib_ResourceManager::GetQpstServer(void* hContext) {
    QLib_ResourceContext* const pEntry = GetServerEntry(hContext);
    if (pEntry == nullptr)
        return nullptr;
    if (pEntry->pQpstServer == nullptr)
        pEntry->pQpstServer = OrNull([&] {
            auto pServer = std::make_unique<QpstServer>("QLIB");
            pServer->connect(pEntry->iComPort, kConnectTimeOut_ms);
            return pServer;
        });
    return pEntry->pQpstServer;
}

EFS* QLib_ResourceManager::GetEFS(void* hContext) {
    QLib_ResourceContext* const pEntry = GetServerEntry(hContext);
    if (pEntry == nullptr)
        return nullptr;
    if (pEntry->pEFS == nullptr)
        pEntry->pEFS = OrNull([&] { return Connected(std::make_unique<EFS>("QLIB-EFS"), pEntry->iComPort); });
    return pEntry->pEFS;
}

SoftwareDownload* QLib_ResourceManager::GetSoftwareDownload(void* hContext) {
    QLib_ResourceContext* const pEntry = GetServerEntry(hContext);
    if (pEntry == nullptr)
        return nullptr;
    if (pEntry->pSoftwareDownload == nullptr)
        pEntry->pSoftwareDownload = OrNull([&] {
            auto pDownload = std::make_unique<SoftwareDownload>(hContext, "QLIB-SW Download");
            if (Diag_FTM* const pPhone = GetDiag_FTM(hContext))
                pDownload->SetLogManager(pPhone->GetDataLogFileHandler());
            return Connected(std::move(pDownload), pEntry->iComPort);
        });
    return pEntry->pSoftwareDownload;
}

QpstServer* QLib_ResourceManager::GetQpstInfoServer() {
    DestroyAllAtExit();
    if (m_pInfoServer == nullptr)
        m_pInfoServer = OrNull([] { return std::make_unique<QpstServer>("QLIB-PortInfo"); });
    return m_pInfoServer;
}

std::vector<std::string> QLib_ResourceManager::ServerPortNames(bool bOnlyWithPhone) {
    try {
        QpstServer* const pServer = GetQpstInfoServer();
        if (pServer == nullptr)
            return {};
        if (!bOnlyWithPhone)
            return pServer->getPortList();
        std::vector<std::string> names;
        for (const PhoneEntry& phone : pServer->getPhoneList())
            names.push_back(phone[0]);
        return names;
    } catch (...) {
        // The next query starts anew, when the server may be back.
        delete std::exchange(m_pInfoServer, nullptr);
        return {};
    }
}
