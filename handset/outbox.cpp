// The handset's output queue.
#include "handset/outbox.h"

#include <algorithm>

#include "handset/line.h"

namespace handset {

void Outbox::Send(Bytes wire, Clock::time_point due) {
    if (!m_waiting.empty())
        due = std::max(due, m_waiting.back().due);
    m_waiting.push_back({due, std::move(wire)});
}

void Outbox::SendAside(Bytes wire, Clock::time_point due) {
    m_aside.emplace(due, std::move(wire));
}

void Outbox::SendNow(const Bytes& wire) {
    if (!WantsLine())
        m_lastProgress = Clock::now();
    m_ready.insert(m_ready.end(), wire.begin(), wire.end());
}

void Outbox::Pump(Line& line, Clock::time_point now) {
    if (!WantsLine())
        m_lastProgress = now;
    for (; !m_waiting.empty() && m_waiting.front().due <= now; m_waiting.pop_front()) {
        const Bytes& wire = m_waiting.front().wire;
        m_ready.insert(m_ready.end(), wire.begin(), wire.end());
    }
    for (; !m_aside.empty() && m_aside.begin()->first <= now; m_aside.erase(m_aside.begin())) {
        const Bytes& wire = m_aside.begin()->second;
        m_ready.insert(m_ready.end(), wire.begin(), wire.end());
    }
    while (WantsLine()) {
        const size_t count = line.Write(m_ready.data() + m_taken, m_ready.size() - m_taken);
        if (count == 0)
            break;
        m_taken += count;
        m_lastProgress = now;
    }
    if (!WantsLine() || now - m_lastProgress >= kPatience) {
        m_ready.clear();
        m_taken = 0;
    }
}

void Outbox::Clear() {
    m_waiting.clear();
    m_aside.clear();
    m_ready.clear();
    m_taken = 0;
}

std::optional<Outbox::Clock::time_point> Outbox::NextPump() const {
    std::optional<Clock::time_point> next;
    if (!m_waiting.empty())
        next = m_waiting.front().due;
    if (!m_aside.empty())
        next = std::min(next.value_or(Clock::time_point::max()), m_aside.begin()->first);
    if (WantsLine())
        next = std::min(next.value_or(Clock::time_point::max()), m_lastProgress + kPatience);
    return next;
}

} // namespace handset
