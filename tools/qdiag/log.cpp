// The log command: shows the packets that the phone sends unsolicited.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <map>

#include "common/interrupt.h"
#include "qdiag/commands.h"
#include "qdiag/log_switches.h"
#include "qdiag/packet_text.h"
#include "qdiag/phone.h"

namespace tools::qdiag {
namespace {

using Clock = std::chrono::steady_clock;

/// Feed passes unsolicited packets from the library's thread to the command's thread. When they arrive faster
/// than they are processed, it drops the oldest ones.
class Feed : public CQLibEvents_Listener {
public:
    explicit Feed(const Phone& phone) : m_phone(phone) { m_phone->AddEventListener(this, nullptr); }
    ~Feed() override { m_phone->RemoveEventListener(this); }
    Feed(const Feed&) = delete;
    Feed& operator=(const Feed&) = delete;

    void messageReceived(LONG length, unsigned char* data, unsigned int, LONG, short, DWORD) override {
        const std::span<const unsigned char> packet(data, static_cast<size_t>(std::max<LONG>(length, 0)));
        if (!IsUnsolicited(packet))
            return;
        ++m_received;
        m_queue.Push(packet);
    }

    /// Takes the oldest packet. Waits briefly for one; returns false when none arrived.
    bool Take(QueueItem& packet) {
        constexpr DWORD kMoment_ms = 100;
        const bool isThere = m_queue.WaitPop(&packet, kMoment_ms);
        m_taken += isThere ? 1 : 0;
        return isThere;
    }

    /// Returns how many packets the queue dropped. Call it after the phone has stopped sending.
    size_t Lost() const {
        DWORD waiting = 0;
        m_queue.GetCount(waiting);
        return m_received - std::min<size_t>(m_received, m_taken + waiting);
    }

private:
    static constexpr DWORD kCapacity = 100000;

    const Phone& m_phone;
    CQLibMessageQueue m_queue{kCapacity};
    std::atomic<size_t> m_received = 0;
    size_t m_taken = 0;
};

/// Watch checks a quiet phone from time to time and throws Failure when it no longer answers.
class Watch {
public:
    explicit Watch(const Phone& phone) : m_phone(phone) {}

    void Heard() { m_next = Clock::now() + kQuietTime; }
    void Quiet() {
        if (Clock::now() < m_next)
            return;
        Heard();
        // A busy phone may miss the short time-out of a single check.
        if (!m_phone.Answers() && !m_phone.Answers())
            throw Failure("the handset stopped answering");
    }

private:
    static constexpr auto kQuietTime = std::chrono::seconds(2);

    const Phone& m_phone;
    Clock::time_point m_next = Clock::now() + kQuietTime;
};

struct Limits {
    unsigned long count;
    Clock::time_point end;
};

Limits LimitsOf(const Job& job) {
    constexpr unsigned long kMostSeconds = 366UL * 24 * 3600;
    const unsigned long seconds = job.Number("--seconds", kMostSeconds, 0);
    return {job.Number("--count", ~0UL, ~0UL),
            job.Has("--seconds") ? Clock::now() + std::chrono::seconds(seconds) : Clock::time_point::max()};
}

/// Prints packets until a limit is reached or the user presses Ctrl-C. Returns how many it printed.
unsigned long PrintPackets(const Phone& phone, Feed& feed, const Limits& limits, bool withBytes) {
    PacketText text;
    Watch watch(phone);
    QueueItem packet;
    unsigned long count = 0;
    const Clock::time_point start = Clock::now();
    while (count < limits.count && Clock::now() < limits.end && !Interrupted()) {
        if (!feed.Take(packet)) {
            watch.Quiet();
            continue;
        }
        watch.Heard();
        ++count;
        char lead[32];
        std::snprintf(lead, sizeof lead, "%9.3f  ",
                      std::chrono::duration<double>(Clock::now() - start).count());
        text.Print(lead, {packet.data, packet.length}, withBytes);
    }
    return count;
}

} // namespace

void LogCommand(const Job& job) {
    std::map<unsigned char, std::vector<unsigned short>> codes; // by equipment id
    for (const std::string& text : job.arguments) {
        const auto code = static_cast<unsigned short>(ParseNumber(text, 0xFFFF, "log code"));
        codes[static_cast<unsigned char>(code >> 12)].push_back(code);
    }
    const std::vector<unsigned short> subsystems = job.Numbers("--messages");
    LimitsOf(job); // reports wrong numbers before the phone is contacted
    const Phone phone(job);
    const InterruptGuard guard;
    Feed feed(phone);
    phone->DIAG_SetPhoneLoggingState(true); // early, so that a recording includes the first record
    LogSwitches switches(phone);
    for (const auto& [equipment, list] : codes)
        switches.AddCodes(equipment, list);
    for (const unsigned short subsystem : subsystems)
        switches.AddMessages(subsystem);
    if (job.Has("--events"))
        switches.AddEvents();
    std::fprintf(stderr, "waiting for packets from the phone; press Ctrl-C to stop\n");
    const unsigned long count = PrintPackets(phone, feed, LimitsOf(job), job.Has("--hex"));
    switches.Undo();
    std::fprintf(stderr, "packets shown: %lu\n", count);
    if (feed.Lost() > 0)
        throw Failure(std::to_string(feed.Lost()) + " packets arrived too fast and were not shown");
}

} // namespace tools::qdiag
