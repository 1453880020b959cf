// The bounded packet queue.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "link/message_queue.h"

namespace {

QueueItem Item(unsigned iNumber, unsigned short iLength) {
    QueueItem item;
    item.length = iLength;
    for (unsigned i = 0; i < iLength; ++i)
        item.data[i] = static_cast<unsigned char>(iNumber * 31 + i);
    return item;
}

bool Same(const QueueItem& a, const QueueItem& b) {
    return a.length == b.length && std::equal(a.data, a.data + a.length, b.data);
}

TEST(MessageQueue, KeepsTheNewestPacketsOfAnySizeInOrder) {
    // More packets than the queue holds, with sizes that make the ring wrap at every position.
    CQLibMessageQueue queue(64);
    const auto Numbered = [](unsigned i) { return Item(i, static_cast<unsigned short>(i * 397 % 4097)); };
    QueueItem taken;
    unsigned iOldest = 0;
    for (unsigned i = 0; i < 2000; ++i) {
        const QueueItem item = Numbered(i);
        queue.Push(&item);
        iOldest = std::max(iOldest, i >= 64 ? i - 63 : 0);
        if (i % 3 == 0) {
            ASSERT_TRUE(queue.Pop(&taken));
            ASSERT_TRUE(Same(taken, Numbered(iOldest++))) << i;
        }
    }
    DWORD iCount = 0;
    queue.GetCount(iCount);
    EXPECT_EQ(iCount, 2000 - iOldest);
    while (iOldest < 2000) {
        ASSERT_TRUE(queue.Pop(&taken));
        ASSERT_TRUE(Same(taken, Numbered(iOldest++)));
    }
    EXPECT_FALSE(queue.Pop(&taken));
    EXPECT_EQ(taken.length, 0);
    EXPECT_TRUE(queue.IsEmpty());
}

TEST(MessageQueue, WaitEndsWithAPacketAndLengthsAreLimited) {
    CQLibMessageQueue queue(4);
    QueueItem taken;
    EXPECT_FALSE(queue.WaitPop(&taken, 1));
    std::thread pusher([&] {
        QueueItem item = Item(1, 4096);
        item.length = 0xFFFF; // more than an item holds
        queue.Push(&item);
    });
    ASSERT_TRUE(queue.WaitPop(&taken, 60000));
    EXPECT_TRUE(Same(taken, Item(1, 4096)));
    pusher.join();
}

} // namespace
