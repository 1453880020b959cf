#include "qlib/resource_manager.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/context_handle.h"
#include "platform/module_pin.h"
#include "portserver/efs.h"
#include "portserver/qpst_server.h"
#include "portserver/software_download.h"
#include "qlib/diag_ftm.h"
#include "qlib/or_null.h"

std::array<QLib_ResourceContext, 50> QLib_ResourceManager::aResourceList{};
bool QLib_ResourceManager::m_bIsUsingQpst = false;
unsigned QLib_ResourceManager::m_iContextCounter = 0;

// On systems that end a process by ending its threads first, the contexts are left to the system: waiting for
// those threads, or for what they held, could last forever.
void QLib_ResourceManager::DestroyAllAtExit() {
    struct AtExit {
        ~AtExit() {
            if (!ProcessIsEnding())
                DestroyAll();
        }
    };
    static const AtExit atExit;
}

void* QLib_ResourceManager::CreateContext(unsigned short iComPort) {
    DestroyAllAtExit();
    if (iComPort == kAnyPort)
        iComPort = FindAnsweringPort();
    if (iComPort == kAnyPort)
        return nullptr;
    if (QLib_ResourceContext* pEntry = EntryOfPort(iComPort)) {
        ++pEntry->iRefCount;
        return pEntry->hContext;
    }
    const auto free = std::find_if(aResourceList.begin(), aResourceList.end(),
                                   [](const QLib_ResourceContext& entry) { return !entry.bInUse; });
    return free != aResourceList.end() && TakeEntry(*free, iComPort) ? free->hContext : nullptr;
}

bool QLib_ResourceManager::TakeEntry(QLib_ResourceContext& entry, unsigned short iComPort) {
    char sName[80];
    std::snprintf(sName, sizeof sName, "QLib_ResourceManager::CreateContext() - #%d",
                  static_cast<int>(m_iContextCounter++));
    void* const hContext = MakeContextHandle(sName);
    if (hContext == nullptr)
        return false;
    entry = {nullptr, 1, hContext, iComPort, 1, nullptr, nullptr, nullptr};
    return true;
}

void* QLib_ResourceManager::CreateContext_LogicalPort(unsigned short iLogicalPort) {
    unsigned short iPhysicalPort = 0;
    return GetPortAliasEntry(iLogicalPort, iPhysicalPort) ? CreateContext(iPhysicalPort) : nullptr;
}

void QLib_ResourceManager::DestroyContext(void* hContext, bool bForce) {
    QLib_ResourceContext* const pEntry = GetResourceEntry(hContext);
    if (pEntry != nullptr && (--pEntry->iRefCount < 1 || bForce))
        DestroyEntry(*pEntry);
}

void QLib_ResourceManager::DestroyEntry(QLib_ResourceContext& entry) {
    entry.bInUse = 0;
    ReleaseContextHandle(std::exchange(entry.hContext, nullptr));
    if (entry.pSoftwareDownload != nullptr)
        entry.pSoftwareDownload->SetLogManager(nullptr); // the log goes with the connection
    delete std::exchange(entry.pDiag_FTM, nullptr);
    delete std::exchange(entry.pQpstServer, nullptr);
    delete std::exchange(entry.pSoftwareDownload, nullptr);
    delete std::exchange(entry.pEFS, nullptr);
}

void QLib_ResourceManager::DestroyAll() {
    for (QLib_ResourceContext& entry : aResourceList)
        if (entry.bInUse)
            DestroyEntry(entry);
    delete std::exchange(m_pInfoServer, nullptr);
}

QLib_ResourceContext* QLib_ResourceManager::GetResourceEntry(void* hContext) {
    DestroyAllAtExit();
    for (QLib_ResourceContext& entry : aResourceList)
        if (hContext && entry.bInUse && entry.hContext == hContext)
            return &entry;
    return nullptr;
}

QLib_ResourceContext* QLib_ResourceManager::EntryOfPort(unsigned short iComPort) {
    for (QLib_ResourceContext& entry : aResourceList)
        if (entry.bInUse && entry.iComPort == iComPort)
            return &entry;
    return nullptr;
}

Diag_FTM* QLib_ResourceManager::GetDiag_FTM(void* hContext) {
    QLib_ResourceContext* const pEntry = GetResourceEntry(hContext);
    if (pEntry == nullptr || pEntry->pDiag_FTM != nullptr)
        return pEntry != nullptr ? pEntry->pDiag_FTM : nullptr;
    QpstServer* const pServer = GetQpstServer(hContext);
    if (m_bIsUsingQpst && pServer == nullptr)
        return nullptr;
    pEntry->pDiag_FTM = OrNull([&] {
        return pServer != nullptr ? std::make_unique<Diag_FTM>(pServer, pEntry->iComPort)
                                  : std::make_unique<Diag_FTM>(pEntry->iComPort);
    });
    return pEntry->pDiag_FTM;
}

bool QLib_ResourceManager::HasDiag_FTM(void* hContext) {
    const QLib_ResourceContext* const pEntry = GetResourceEntry(hContext);
    return pEntry != nullptr && pEntry->pDiag_FTM != nullptr;
}

bool QLib_ResourceManager::GetComPortNumber(void* hContext, unsigned short* piComPort) {
    const QLib_ResourceContext* const pEntry = GetResourceEntry(hContext);
    if (pEntry == nullptr || piComPort == nullptr)
        return false;
    *piComPort = pEntry->iComPort;
    return true;
}

void QLib_ResourceManager::GetLibraryVersion(char* sVersion) {
    constexpr char kOverPortServer[] = "QLIB V04.23,QPST";
    constexpr char kOverSerialPort[] = "QLIB V04.23,QPHONEMS";
    if (sVersion == nullptr)
        return;
    if (m_bIsUsingQpst)
        std::memcpy(sVersion, kOverPortServer, sizeof kOverPortServer);
    else
        std::memcpy(sVersion, kOverSerialPort, sizeof kOverSerialPort);
}
