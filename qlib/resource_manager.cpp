#include "qlib/resource_manager.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <utility>

#include "platform/context_handle.h"
#include "platform/module_pin.h"
#include "qlib/diag_ftm.h"

std::array<QLib_ResourceContext, 50> QLib_ResourceManager::aResourceList{};
bool QLib_ResourceManager::m_bIsUsingQpst = false;
unsigned QLib_ResourceManager::m_iContextCounter = 0;

namespace {

// Has DestroyAll run at the process's end, and when the library is unloaded. Where the process ends by ending
// the threads first, what they leave goes with the process: waiting for them, or for what they held, could
// last for ever.
void DestroyAllAtExit() {
    struct AtExit {
        ~AtExit() {
            if (!ProcessIsEnding())
                QLib_ResourceManager::DestroyAll();
        }
    };
    static const AtExit atExit;
}

} // namespace

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
    if (!hContext)
        return false;
    entry = {nullptr, 1, hContext, iComPort, 1};
    return true;
}

void* QLib_ResourceManager::CreateContext_LogicalPort(unsigned short iLogicalPort) {
    unsigned short iPhysicalPort = 0;
    return GetPortAliasEntry(iLogicalPort, iPhysicalPort) ? CreateContext(iPhysicalPort) : nullptr;
}

void QLib_ResourceManager::DestroyContext(void* hContext, bool bForce) {
    QLib_ResourceContext* const pEntry = GetResourceEntry(hContext);
    if (pEntry && (--pEntry->iRefCount < 1 || bForce))
        DestroyEntry(*pEntry);
}

void QLib_ResourceManager::DestroyEntry(QLib_ResourceContext& entry) {
    entry.bInUse = 0;
    ReleaseContextHandle(std::exchange(entry.hContext, nullptr));
    delete std::exchange(entry.pDiag_FTM, nullptr);
}

void QLib_ResourceManager::DestroyAll() {
    for (QLib_ResourceContext& entry : aResourceList)
        if (entry.bInUse)
            DestroyEntry(entry);
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
    if (!pEntry)
        return nullptr;
    if (!pEntry->pDiag_FTM && !m_bIsUsingQpst) {
        try {
            pEntry->pDiag_FTM = new Diag_FTM(pEntry->iComPort);
        } catch (const std::exception&) {
            return nullptr;
        }
    }
    return pEntry->pDiag_FTM;
}

bool QLib_ResourceManager::GetComPortNumber(void* hContext, unsigned short* piComPort) {
    const QLib_ResourceContext* const pEntry = GetResourceEntry(hContext);
    if (!pEntry || !piComPort)
        return false;
    *piComPort = pEntry->iComPort;
    return true;
}

QpstServer* QLib_ResourceManager::GetQpstServer(void*) {
    return nullptr;
}

EFS* QLib_ResourceManager::GetEFS(void*) {
    return nullptr;
}

SoftwareDownload* QLib_ResourceManager::GetSoftwareDownload(void*) {
    return nullptr;
}

void QLib_ResourceManager::GetLibraryVersion(char* sVersion) {
    constexpr char kOverPortServer[] = "QLIB V04.23,QPST";
    constexpr char kOverSerialPort[] = "QLIB V04.23,QPHONEMS";
    if (!sVersion)
        return;
    if (m_bIsUsingQpst)
        std::memcpy(sVersion, kOverPortServer, sizeof kOverPortServer);
    else
        std::memcpy(sVersion, kOverSerialPort, sizeof kOverSerialPort);
}
