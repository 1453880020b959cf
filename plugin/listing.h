// Listings of folders: collecting their entries, and returning them to the host one by one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/types.h"

/// One entry of a listed folder, as the phone's enumeration reports it.
struct ListingEntry {
    std::string Name;         // without its path, at most kMaxEntryName characters
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

/// FolderReader lists one phone folder. It is used within one operation, on its thread.
class FolderReader {
public:
    explicit FolderReader(Operation& operation) : m_operation(operation) {}
    FolderReader(const FolderReader&) = delete;
    FolderReader& operator=(const FolderReader&) = delete;

    /// Lists a folder over the open connection. Returns an empty listing and logs a failure when the folder
    /// cannot be listed.
    Listing Read(const char* sPhonePath);

    /// Appends an entry to the listing that Read is making.
    void Add(ListingEntry entry);
    /// Records that an entry was lost. Read then returns an empty listing, because an incomplete one would
    /// look complete.
    void MarkIncomplete() { m_bIncomplete = true; }

private:
    Operation& m_operation;
    Listing m_listing;
    bool m_bIncomplete = false;
};

/// OnDirEntry is the library's directory callback: it passes the entry to the active FolderReader. Always
/// returns 1.
unsigned char OnDirEntry(char* const sPath, unsigned char isFile, unsigned short iMask,
                         unsigned char iBufOption, unsigned char iClean, DWORD iDate, DWORD iFileSize,
                         void* pUserData);

/// Listings keeps the listings that the host has open. There may be several, because a tree scan keeps a
/// parent's listing open while it lists the children. An unknown handle, or one that is no longer known,
/// continues the newest listing, which is kept after it is closed. When more than kMaxOpen were never closed,
/// the oldest are dropped. Any thread may call; no call waits for the connection.
class Listings {
public:
    using Handle = uintptr_t; // never 0, never all ones
    static constexpr size_t kMaxOpen = 256;

    /// Forgets the newest listing, because another one is about to be made.
    void Begin();
    /// Stores a listing, which is now the newest, and returns its handle. It must not be empty; its first
    /// entry is the current one.
    Handle Add(Listing listing);
    /// Advances a listing to its next entry and copies the entry. Returns false after the last one.
    bool Next(Handle handle, ListingEntry& entry);
    void Close(Handle handle);

private:
    struct Walk {
        Listing listing;
        size_t iCursor = 0;
    };

    std::mutex m_lock;
    std::map<Handle, std::shared_ptr<Walk>> m_open; // handles count up, so the oldest comes first
    std::shared_ptr<Walk> m_pLast = std::make_shared<Walk>();
    Handle m_iLastHandle = 0;
};
