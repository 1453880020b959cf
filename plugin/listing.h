// Listed folders: collecting their entries, and walking them for the host.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/types.h"

/// One entry of a listed folder, as the phone's enumeration delivers it.
struct ListingEntry {
    std::string Name;         // its own name, at most kMaxEntryName characters
    unsigned char isFile = 0; // 1 file, 0 folder, 2 link
    unsigned char BufOption = 0;
    unsigned char Clean = 0;
    unsigned short Mask = 0;
    DWORD Date = 0; // seconds since 1970, UTC
    DWORD FileSize = 0;
};

constexpr size_t kMaxEntryName = 383;

using Listing = std::vector<ListingEntry>;

class Operation;

/// FolderReader lists one phone folder. It lives within one operation, on its thread.
class FolderReader {
public:
    explicit FolderReader(Operation& operation) : m_operation(operation) {}
    FolderReader(const FolderReader&) = delete;
    FolderReader& operator=(const FolderReader&) = delete;

    /// Read lists a folder over the open connection; empty, and a complaint, when it cannot be listed.
    Listing Read(const char* sPhonePath);

    /// Add appends an entry to the listing that Read is making.
    void Add(ListingEntry entry);
    /// Spoil makes Read return an empty listing: an entry was lost, and a part of a folder would pass for the
    /// whole of it.
    void Spoil() { m_bSpoilt = true; }

private:
    Operation& m_operation;
    Listing m_listing;
    bool m_bSpoilt = false;
};

/// OnDirEntry is the library's directory callback: it hands the entry to the FolderReader that reads. Always
/// 1.
unsigned char OnDirEntry(char* const sPath, unsigned char isFile, unsigned short iMask,
                         unsigned char iBufOption, unsigned char iClean, DWORD iDate, DWORD iFileSize,
                         void* pUserData);

/// Listings keeps what the host is walking: several listings at a time, because a tree scan keeps the
/// parent's open while it lists the children. A handle that is not known (any more) walks the listing made
/// last, which is kept after its end. Of listings that were never closed the oldest go when there are more
/// than kMaxOpen. Any thread may call; it never waits for the connection.
class Listings {
public:
    using Handle = uintptr_t; // never 0, never all ones
    static constexpr size_t kMaxOpen = 256;

    /// Forgets the last listing: a new one is about to be made.
    void Begin();
    /// Add keeps a listing, which is now the last one, and returns its handle. It must not be empty; its
    /// first entry is the current one.
    Handle Add(Listing listing);
    /// Next steps to a listing's next entry and copies it. False behind the last, for good.
    bool Next(Handle handle, ListingEntry& entry);
    void Close(Handle handle);

private:
    struct Walk {
        Listing listing;
        size_t iCursor = 0;
    };

    std::mutex m_lock;
    std::map<Handle, std::shared_ptr<Walk>> m_open; // handles count up, so the oldest stands first
    std::shared_ptr<Walk> m_pLast = std::make_shared<Walk>();
    Handle m_iLastHandle = 0;
};
