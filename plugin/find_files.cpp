// Listing folders for the host.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string_view>
#include <utility>

#include "platform/last_error.h"
#include "plugin/connection.h"
#include "plugin/entry_points.h"
#include "plugin/front.h"
#include "plugin/listing.h"
#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/phone_time.h"
#include "plugin/reasons.h"
#include "qlib/call_layer.h"

namespace {

constexpr uintptr_t kNoListing = UINTPTR_MAX;
constexpr char kList[] = "list";

/// Listing handles are opaque to the host.
HANDLE AsHandle(uintptr_t iHandle) {
    return reinterpret_cast<HANDLE>(iHandle); // NOLINT(performance-no-int-to-ptr)
}

/// Converts to units of 100 ns since 1601.
FILETIME FileTimeOf(DWORD iDate) {
    constexpr uint64_t k1970 = 116444736000000000;
    constexpr uint64_t kUnitsPerSecond = 10000000;
    const uint64_t iUnits = k1970 + CalendarTime(iDate) * kUnitsPerSecond;
    return {static_cast<DWORD>(iUnits & 0xFFFFFFFF), static_cast<DWORD>(iUnits >> 32)};
}

void FillFindData(WIN32_FIND_DATAA& findData, const ListingEntry& entry) {
    findData = {};
    findData.dwFileAttributes = entry.isFile == 0 ? FILE_ATTRIBUTE_DIRECTORY : 0;
    findData.ftCreationTime = findData.ftLastAccessTime = findData.ftLastWriteTime = FileTimeOf(entry.Date);
    findData.nFileSizeLow = entry.FileSize;
    entry.Name.copy(findData.cFileName, sizeof findData.cFileName - 1);
}

/// The phone keeps its non-volatile items in this folder. Hosts delete what they list, so it is shown as
/// empty. They list it with and without a separator at the end.
bool IsHidden(std::string_view sPhonePath) {
    return sPhonePath == "nvm" || sPhonePath == "nvm/";
}

enum class Outcome { Listed, Empty, NotConnected };

Outcome List(Operation& operation, const char* sPhonePath, Listing& listing) {
    operation.Describe(kList, sPhonePath);
    EnsureConnected(operation);
    if (!operation.Context() || !QLIB_IsPhoneConnected(operation.Context()))
        return operation.Fail(Outcome::NotConnected,
                              FailureReason(operation, {OperationFailure::Kind::NoResponse}));
    if (!IsHidden(sPhonePath))
        listing = FolderReader(operation).Read(sPhonePath);
    return listing.empty() ? Outcome::Empty : Outcome::Listed;
}

uintptr_t FindFirst(const char* sPhonePath, WIN32_FIND_DATAA& findData) {
    Listing listing;
    TheFront().listings.Begin();
    const Outcome eOutcome = UsePhone(
        Outcome::NotConnected, [&](Operation& operation) { return List(operation, sPhonePath, listing); });
    if (eOutcome == Outcome::Empty)
        SetThreadLastError(kErrorNoMoreFiles);
    if (eOutcome != Outcome::Listed)
        return kNoListing;
    FillFindData(findData, listing.front());
    return TheFront().listings.Add(std::move(listing));
}

} // namespace

HANDLE HOST_CALL FsFindFirst(char* sPath, WIN32_FIND_DATAA* pFindData) {
    char sPhonePath[kMaxPathSize];
    if (!pFindData || !TakeHostPath(sPath, sPhonePath))
        return AsHandle(RefusePath(kList, kNoListing));
    try {
        return AsHandle(FindFirst(sPhonePath, *pFindData));
    } catch (const std::exception&) {
        return AsHandle(kNoListing);
    }
}

BOOL HOST_CALL FsFindNext(HANDLE hListing, WIN32_FIND_DATAA* pFindData) {
    if (pFindData == nullptr)
        return 0;
    try {
        ListingEntry entry;
        if (!TheFront().listings.Next(reinterpret_cast<uintptr_t>(hListing), entry))
            return 0;
        FillFindData(*pFindData, entry);
        return 1;
    } catch (const std::exception&) {
        return 0;
    }
}

int HOST_CALL FsFindClose(HANDLE hListing) {
    TheFront().listings.Close(reinterpret_cast<uintptr_t>(hListing));
    return 0;
}
