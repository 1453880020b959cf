// Events for threads to wait on: eventfd counters.
#include "platform/wait_event.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

/// A handle is the descriptor plus one, cast to a pointer, so that descriptor 0 is not null.
void* HandleOf(int fd) {
    return reinterpret_cast<void*>(static_cast<intptr_t>(fd) + 1); // NOLINT(performance-no-int-to-ptr)
}

int DescriptorOf(void* hEvent) {
    return static_cast<int>(reinterpret_cast<intptr_t>(hEvent) - 1);
}

/// False when another thread took the event first.
bool Take(int fd) {
    uint64_t iCount = 0;
    return read(fd, &iCount, sizeof iCount) == sizeof iCount;
}

int Remaining_ms(Clock::time_point deadline, DWORD iLimit_ms) {
    if (iLimit_ms == kWaitForever)
        return -1;
    const auto left = std::chrono::ceil<Milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, INT32_MAX));
}

} // namespace

WaitEvent::WaitEvent(bool bSet) : m_hEvent(HandleOf(eventfd(bSet ? 1 : 0, EFD_CLOEXEC | EFD_NONBLOCK))) {}

WaitEvent::~WaitEvent() {
    if (IsValid())
        close(DescriptorOf(m_hEvent));
}

void WaitEvent::Set() {
    const uint64_t iOne = 1;
    if (IsValid())
        static_cast<void>(!write(DescriptorOf(m_hEvent), &iOne, sizeof iOne));
}

bool WaitEvent::Wait(DWORD iLimit_ms) {
    return WaitWithMessages(std::span(&m_hEvent, 1), iLimit_ms) == 0;
}

DWORD WaitWithMessages(std::span<void* const> handles, DWORD iLimit_ms) {
    const Clock::time_point deadline = Clock::now() + Milliseconds(iLimit_ms);
    std::vector<pollfd> events;
    for (void* const hEvent : handles) {
        if (hEvent == nullptr)
            return kWaitFailed;
        events.push_back({DescriptorOf(hEvent), POLLIN, 0});
    }
    for (;;) {
        const int iRemaining_ms = Remaining_ms(deadline, iLimit_ms);
        const int iReady = poll(events.data(), events.size(), iRemaining_ms);
        if (iReady < 0 && errno != EINTR)
            return kWaitFailed;
        for (size_t i = 0; iReady > 0 && i < events.size(); ++i) {
            if ((events[i].revents & POLLNVAL) != 0)
                return kWaitFailed;
            if ((events[i].revents & POLLIN) != 0 && Take(events[i].fd))
                return static_cast<DWORD>(i);
        }
        if (iRemaining_ms == 0)
            return kWaitTimedOut;
    }
}
