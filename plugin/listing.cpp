#include "plugin/listing.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <utility>

#include "plugin/front.h"
#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/reasons.h"
#include "qlib/call_layer.h"

Listing FolderReader::Read(const char* sPhonePath) {
    m_operation.State().pFolderReader = this;
    const bool bListed = QLIB_EfsDirectory(m_operation.Context(), sPhonePath);
    m_operation.State().pFolderReader = nullptr;
    if (m_bIncomplete)
        m_listing.clear();
    if (!bListed || m_bIncomplete)
        m_operation.LogFailure(m_bIncomplete ? "no memory left on this computer"
                                             : FailureReason(m_operation));
    return std::move(m_listing);
}

void FolderReader::Add(ListingEntry entry) {
    m_listing.push_back(std::move(entry));
}

unsigned char OnDirEntry(char* const sPath, unsigned char isFile, unsigned short iMask,
                         unsigned char iBufOption, unsigned char iClean, DWORD iDate, DWORD iFileSize,
                         void*) {
    FolderReader* const pReader = TheFront().state.pFolderReader;
    if (pReader == nullptr)
        return 1;
    StripLeadingSeparators(sPath);
    const char* const sName = EntryName(sPath);
    try {
        pReader->Add({std::string(sName, std::min(std::strlen(sName), kMaxEntryName)), isFile, iBufOption,
                      iClean, iMask, iDate, iFileSize});
    } catch (const std::exception&) {
        pReader->MarkIncomplete();
    }
    return 1;
}

void Listings::Begin() {
    auto pEmpty = std::make_shared<Walk>();
    const std::lock_guard lock(m_lock);
    m_pLast.swap(pEmpty);
}

Listings::Handle Listings::Add(Listing listing) {
    auto pWalk = std::make_shared<Walk>(Walk{std::move(listing)});
    const std::lock_guard lock(m_lock);
    do
        ++m_iLastHandle;
    while (m_iLastHandle == 0 || m_iLastHandle == UINTPTR_MAX || m_open.contains(m_iLastHandle));
    m_open.emplace(m_iLastHandle, pWalk);
    m_pLast = std::move(pWalk);
    if (m_open.size() > kMaxOpen)
        m_open.erase(m_open.begin());
    return m_iLastHandle;
}

bool Listings::Next(Handle handle, ListingEntry& entry) {
    const std::lock_guard lock(m_lock);
    const auto found = m_open.find(handle);
    Walk& walk = found != m_open.end() ? *found->second : *m_pLast;
    if (walk.iCursor + 1 >= walk.listing.size())
        return false;
    entry = walk.listing[++walk.iCursor];
    return true;
}

void Listings::Close(Handle handle) {
    const std::lock_guard lock(m_lock);
    m_open.erase(handle);
}
