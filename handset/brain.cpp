// The inside of a Handset.
#include "handset/brain.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

#include "handset/commands.h"
#include "handset/unsolicited.h"

namespace handset {
namespace {

using Clock = Outbox::Clock;

const Bytes kModeChange = {0x44};

Bytes ChatterRecord(uint16_t number) {
    constexpr uint16_t kCode = 0x1234;
    return LogPacket(kCode, number,
                     {'l', 'o', 'g', static_cast<uint8_t>(number), static_cast<uint8_t>(number >> 8)});
}

timespec ToTimespec(Clock::duration duration) {
    const auto nanoseconds = std::max<int64_t>(0, std::chrono::nanoseconds(duration).count());
    return {static_cast<time_t>(nanoseconds / 1000000000), static_cast<long>(nanoseconds % 1000000000)};
}

void Append(Bytes& wire, const Bytes& more) {
    wire.insert(wire.end(), more.begin(), more.end());
}

} // namespace

Brain::Brain() : line(std::make_unique<Line>()), m_wakeUp(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (m_wakeUp < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
    m_thread = std::thread(&Brain::Run, this);
}

Brain::~Brain() {
    Unplug();
    Change([](Brain& brain) { brain.m_stop = true; });
    m_thread.join();
    close(m_wakeUp);
}

void Brain::Wake() {
    const uint64_t one = 1;
    // The write fails only when the thread is about to wake anyway.
    [[maybe_unused]] const ssize_t written = write(m_wakeUp, &one, sizeof one);
}

void Brain::Run() {
    for (;;) {
        Wait();
        Lock lock(mutex);
        if (m_stop)
            return;
        if (m_hangUpWanted)
            HangUp();
        if (line != nullptr)
            Receive(lock);
        if (line != nullptr)
            outbox.Pump(*line, Clock::now());
    }
}

void Brain::Wait() {
    pollfd sources[2] = {{m_wakeUp, POLLIN, 0}, {-1, POLLIN, 0}};
    std::optional<Clock::time_point> next;
    Look([&](const Brain& brain) {
        if (brain.line == nullptr)
            return;
        sources[1].fd = brain.line->Descriptor();
        if (brain.outbox.WantsLine())
            sources[1].events |= POLLOUT;
        next = brain.outbox.NextPump();
    });
    const timespec limit = next ? ToTimespec(*next - Clock::now()) : timespec{};
    ppoll(sources, 2, next ? &limit : nullptr, nullptr);
    uint64_t count = 0;
    if (sources[0].revents & POLLIN) {
        [[maybe_unused]] const ssize_t taken = read(m_wakeUp, &count, sizeof count);
    }
}

// --- Plugging --------------------------------------------------------------------------------------------

void Brain::TellPlugChange() {
    const auto callbacks = Look([](const Brain& brain) { return brain.plugCallbacks; });
    for (const auto& callback : callbacks)
        callback();
}

void Brain::HangUp() {
    line.reset();
    outbox.Clear();
    held.clear();
    m_deframer.Reset();
    m_lines.Reset();
    m_hangUpWanted = false;
    ++m_hangUps;
    m_changed.notify_all();
}

void Brain::Vanish(Lock& lock) {
    HangUp();
    m_isTelling = true;
    lock.unlock();
    TellPlugChange();
    lock.lock();
    m_isTelling = false;
    m_changed.notify_all();
}

void Brain::Unplug() {
    Lock lock(mutex);
    if (IsOwnThread()) {
        if (line != nullptr)
            Vanish(lock);
        return;
    }
    m_changed.wait(lock, [this] { return !m_isTelling; });
    if (line == nullptr)
        return;
    m_hangUpWanted = true;
    Wake();
    m_changed.wait(lock, [this] { return !m_hangUpWanted && !m_isTelling; });
    lock.unlock();
    TellPlugChange();
}

void Brain::Replug() {
    {
        Lock lock(mutex);
        if (!IsOwnThread())
            m_changed.wait(lock, [this] { return !m_isTelling; });
        if (line != nullptr)
            return;
        line = std::make_unique<Line>();
    }
    Wake();
    TellPlugChange();
}

// --- Requests --------------------------------------------------------------------------------------------

bool Brain::WaitForRequests(size_t count, std::chrono::milliseconds limit) const {
    Lock lock(mutex);
    return m_changed.wait_for(lock, limit, [&] { return record.Count() >= count; });
}

void Brain::Receive(Lock& lock) {
    uint8_t buffer[16384];
    const size_t size = line->Read(buffer, sizeof buffer);
    record.AddWire(buffer, size);
    const unsigned hangUps = m_hangUps;
    for (size_t at = 0; at < size && m_hangUps == hangUps;)
        at += TakeRequest(buffer + at, size - at, lock);
}

size_t Brain::TakeRequest(const uint8_t* data, size_t size, Lock& lock) {
    size_t used = 0;
    const bool isText = dataMode;
    const std::optional<Bytes> request =
        isText ? m_lines.Take(data, size, used) : m_deframer.Take(data, size, used);
    droppedFrames = m_deframer.Dropped();
    if (request)
        Answer(*request, isText, lock);
    return used;
}

void Brain::Answer(const Bytes& request, bool isText, Lock& lock) {
    record.AddRequest(request);
    m_changed.notify_all();
    if (requestCallback) {
        const auto callback = requestCallback;
        lock.unlock();
        callback(request);
        lock.lock();
    }
    const std::optional<Misbehaviour> rule = misbehaviours.Match(request);
    Reply reply;
    if (!rule || CarriesOut(rule->action))
        reply.packets = CarryOut(request, isText, lock);
    if (rule)
        Apply(*rule, request, reply);
    if (reply.hangsUp)
        Vanish(lock);
    else if (reply.isHeld)
        held.insert(held.end(), reply.packets.begin(), reply.packets.end());
    else
        Post(reply, isText);
}

std::vector<Bytes> Brain::CarryOut(const Bytes& request, bool isText, Lock& lock) {
    const Answerer* best = nullptr;
    for (const auto& [prefix, answerer] : scripts) // of two matching prefixes the longer one sorts later
        if (BeginsWith(request, prefix))
            best = &answerer;
    if (best != nullptr) {
        const Answerer answerer = *best;
        lock.unlock();
        std::vector<Bytes> packets = answerer(request);
        lock.lock();
        return packets;
    }
    if (isText) {
        bool toDiagnostics = false;
        Bytes answer = AnswerToLine(request, toDiagnostics);
        dataMode = !toDiagnostics;
        return {answer};
    }
    if (request == kModeChange)
        dataMode = true;
    const Bytes answer = AnswerTo(request, files, state);
    std::vector<Bytes> packets;
    for (const Delayed::Packets& later : {state.delayed.TakePackets(), state.radio.TakePackets()})
        for (const auto& [after, packet] : later)
            if (after.count() < 0)
                packets.push_back(packet);
            else
                outbox.SendAside(Frame(packet), Clock::now() + latency + after);
    packets.push_back(answer);
    return packets;
}

/// Sends the held responses, the log records that come before a response, and the response as one piece.
void Brain::Post(const Reply& reply, bool isText) {
    if (reply.packets.empty() || !line)
        return;
    Bytes wire;
    for (int i = 0; i < chatter && !isText; ++i)
        Append(wire, Frame(ChatterRecord(m_logNumber++)));
    for (const Bytes& packet : held)
        Append(wire, isText ? packet : Frame(packet));
    held.clear();
    for (const Bytes& packet : reply.packets)
        Append(wire, isText ? packet : Frame(packet, reply.isCorrupt));
    outbox.Send(std::move(wire), Clock::now() + latency + reply.delay);
    outbox.Pump(*line, Clock::now());
}

} // namespace handset
