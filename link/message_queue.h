// The bounded queues in which received packets wait to be taken.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

#include "platform/export.h"
#include "platform/types.h"

/// The largest received packet, with its two FCS bytes.
constexpr unsigned kMaxPacketSize = 4096;

/// One queued packet; bytes beyond `length` are undefined.
struct QueueItem {
    unsigned short length;
    unsigned char data[kMaxPacketSize];
};
static_assert(sizeof(QueueItem) == 4098);

/// CQLibMessageQueue is a first-in first-out queue that keeps the newest packets: a packet that comes when
/// it is full pushes the oldest out, without report. Every operation locks it; any thread may call.
class QUILLET_API CQLibMessageQueue {
public:
    /// A queue of at most iCapacity packets.
    explicit CQLibMessageQueue(DWORD iCapacity);

    /// Push appends a copy of the packet and wakes a waiting thread. Always true.
    bool Push(const QueueItem* pItem);
    /// The same from bytes, of which at most kMaxPacketSize are kept.
    bool Push(std::span<const unsigned char> packet);
    /// Pop takes the oldest packet; false, with length 0, when there is none. It never waits.
    bool Pop(QueueItem* pItem);
    /// WaitPop takes the oldest packet, waiting at most iLimit_ms for one to come.
    bool WaitPop(QueueItem* pItem, DWORD iLimit_ms);
    /// Clear removes all packets. Always true.
    bool Clear();
    /// GetCount tells the number of waiting packets. Always true.
    bool GetCount(DWORD& iCount) const;
    bool IsEmpty() const;

private:
    bool TakeOldest(QueueItem* pItem);
    void DropOldest();
    void Reserve(size_t iBytes);
    void Write(std::span<const unsigned char> bytes);
    void Read(std::span<unsigned char> bytes);

    const DWORD m_iCapacity;
    mutable std::mutex m_lock;
    std::condition_variable m_arrived;
    // The packets, each behind its 16-bit length, in a ring of bytes that grows with what is queued: a queue
    // of short packets stays small, and no packet costs an allocation.
    std::vector<unsigned char> m_aRing;
    size_t m_iHead = 0;
    size_t m_iUsed = 0;
    DWORD m_iCount = 0;
};
