#include "link/message_queue.h"

#include <algorithm>

#include "link/clock.h"

namespace {

constexpr size_t kLengthSize = 2;
constexpr size_t kKeptWhenCleared = 64 * 1024;

} // namespace

CQLibMessageQueue::CQLibMessageQueue(DWORD iCapacity) : m_iCapacity(iCapacity) {}

bool CQLibMessageQueue::Push(const QueueItem* pItem) {
    return Push({pItem->data, std::min<size_t>(pItem->length, kMaxPacketSize)});
}

bool CQLibMessageQueue::Push(std::span<const unsigned char> packet) {
    packet = packet.first(std::min<size_t>(packet.size(), kMaxPacketSize));
    const unsigned char aLength[kLengthSize] = {static_cast<unsigned char>(packet.size()),
                                                static_cast<unsigned char>(packet.size() >> 8)};
    {
        const std::lock_guard lock(m_lock);
        Reserve(kLengthSize + packet.size());
        Write(aLength);
        Write(packet);
        ++m_iCount;
        if (m_iCount > m_iCapacity)
            DropOldest();
    }
    m_arrived.notify_one();
    return true;
}

bool CQLibMessageQueue::Pop(QueueItem* pItem) {
    const std::lock_guard lock(m_lock);
    return TakeOldest(pItem);
}

bool CQLibMessageQueue::WaitPop(QueueItem* pItem, DWORD iLimit_ms) {
    std::unique_lock lock(m_lock);
    m_arrived.wait_for(lock, Milliseconds(iLimit_ms), [this] { return m_iCount > 0; });
    return TakeOldest(pItem);
}

bool CQLibMessageQueue::Clear() {
    const std::lock_guard lock(m_lock);
    m_iHead = m_iUsed = 0;
    m_iCount = 0;
    if (m_aRing.size() > kKeptWhenCleared)
        m_aRing = {};
    return true;
}

bool CQLibMessageQueue::GetCount(DWORD& iCount) const {
    const std::lock_guard lock(m_lock);
    iCount = m_iCount;
    return true;
}

bool CQLibMessageQueue::IsEmpty() const {
    const std::lock_guard lock(m_lock);
    return m_iCount == 0;
}

bool CQLibMessageQueue::TakeOldest(QueueItem* pItem) {
    pItem->length = 0;
    if (m_iCount == 0)
        return false;
    unsigned char aLength[kLengthSize];
    Read(aLength);
    pItem->length = static_cast<unsigned short>(aLength[0] | aLength[1] << 8);
    Read({pItem->data, pItem->length});
    --m_iCount;
    return true;
}

void CQLibMessageQueue::DropOldest() {
    unsigned char aLength[kLengthSize];
    Read(aLength);
    const size_t iLength = aLength[0] | static_cast<size_t>(aLength[1]) << 8;
    m_iHead = (m_iHead + iLength) % m_aRing.size();
    m_iUsed -= iLength;
    --m_iCount;
}

void CQLibMessageQueue::Reserve(size_t iBytes) {
    if (m_iUsed + iBytes <= m_aRing.size())
        return;
    std::vector<unsigned char> grown(
        std::max(2 * m_aRing.size(), m_iUsed + std::max(iBytes, kKeptWhenCleared)));
    const size_t iUsed = m_iUsed;
    Read({grown.data(), iUsed});
    m_aRing = std::move(grown);
    m_iHead = 0;
    m_iUsed = iUsed;
}

void CQLibMessageQueue::Write(std::span<const unsigned char> bytes) {
    const size_t iTail = (m_iHead + m_iUsed) % m_aRing.size();
    const size_t iFirst = std::min(bytes.size(), m_aRing.size() - iTail);
    std::copy_n(bytes.begin(), iFirst, m_aRing.begin() + static_cast<ptrdiff_t>(iTail));
    std::copy(bytes.begin() + static_cast<ptrdiff_t>(iFirst), bytes.end(), m_aRing.begin());
    m_iUsed += bytes.size();
}

void CQLibMessageQueue::Read(std::span<unsigned char> bytes) {
    const size_t iFirst = std::min(bytes.size(), m_aRing.size() - m_iHead);
    std::copy_n(m_aRing.begin() + static_cast<ptrdiff_t>(m_iHead), iFirst, bytes.begin());
    std::copy_n(m_aRing.begin(), bytes.size() - iFirst, bytes.begin() + static_cast<ptrdiff_t>(iFirst));
    if (!m_aRing.empty())
        m_iHead = (m_iHead + bytes.size()) % m_aRing.size();
    m_iUsed -= bytes.size();
}
