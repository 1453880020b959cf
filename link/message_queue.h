// The bounded queues of received packets.
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

/// CQLibMessageQueue is a FIFO that keeps the newest packets: pushing to a full queue drops the oldest packet
/// silently. Every operation locks the queue; any thread may call.
class QUILLET_API CQLibMessageQueue {
public:
    /// Makes a queue of at most iCapacity packets.
    explicit CQLibMessageQueue(DWORD iCapacity);

    /// Push appends a copy of the packet and wakes one waiting thread. Always true.
    bool Push(const QueueItem* pItem);
    /// The same from bytes; at most kMaxPacketSize of them are kept.
    bool Push(std::span<const unsigned char> packet);
    /// Pop removes the oldest packet; false, with length 0, when the queue is empty. Never waits.
    bool Pop(QueueItem* pItem);
    /// WaitPop is Pop, but waits at most iLimit_ms for a packet to arrive.
    bool WaitPop(QueueItem* pItem, DWORD iLimit_ms);
    /// Clear removes all packets. Always true.
    bool Clear();
    /// GetCount stores the number of queued packets. Always true.
    bool GetCount(DWORD& iCount) const;
    /// IsEmpty: true when no packet is queued.
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
    // The packets, each after its 16-bit length, in a ring of bytes that grows as needed: a queue of short
    // packets stays small, and a packet needs no allocation of its own.
    std::vector<unsigned char> m_aRing;
    size_t m_iHead = 0;
    size_t m_iUsed = 0;
    DWORD m_iCount = 0;
};
