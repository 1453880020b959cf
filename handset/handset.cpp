// The simulated handset as its users see it.
#include "handset/handset.h"

#include "handset/brain.h"
#include "handset/unsolicited.h"

namespace handset {

Handset::Handset() : m_brain(std::make_unique<Brain>()) {}

Handset::~Handset() {
    m_brain->Unplug(); // while callbacks may still ask for TtyPath
}

std::string Handset::TtyPath() const {
    return m_brain->Look([this] { return m_brain->line ? m_brain->line->Path() : std::string(); });
}

void Handset::Unplug() {
    m_brain->Unplug();
}

void Handset::Replug() {
    m_brain->Replug();
}

void Handset::OnPlugChange(std::function<void()> callback) {
    m_brain->Look([&] { m_brain->plugCallbacks.push_back(std::move(callback)); });
}

void Handset::WithFiles(const std::function<void(FileSystem&)>& work) {
    m_brain->Look([&] { work(m_brain->files); });
}

void Handset::WithState(const std::function<void(State&)>& work) {
    m_brain->Look([&] { work(m_brain->state); });
}

std::vector<Bytes> Handset::Requests() const {
    return m_brain->Look([this] { return m_brain->record.Requests(); });
}

void Handset::ClearRequests() {
    m_brain->Look([this] { m_brain->record.Clear(); });
}

bool Handset::WaitForRequests(size_t count, std::chrono::milliseconds limit) const {
    return m_brain->WaitForRequests(count, limit);
}

Bytes Handset::WireBytes() const {
    return m_brain->Look([this] { return m_brain->record.Wire(); });
}

void Handset::SetRecordLimit(size_t requests) {
    m_brain->Look([&] { m_brain->record.SetLimit(requests); });
}

size_t Handset::DroppedFrames() const {
    return m_brain->Look([this] { return m_brain->droppedFrames; });
}

void Handset::OnRequest(std::function<void(const Bytes& request)> callback) {
    m_brain->Look([&] { m_brain->requestCallback = std::move(callback); });
}

void Handset::Misbehave(Misbehaviour rule) {
    m_brain->Look([&] { m_brain->misbehaviours.Add(std::move(rule)); });
}

void Handset::Behave() {
    m_brain->Look([this] {
        m_brain->misbehaviours.Clear();
        m_brain->held.clear();
    });
}

void Handset::Script(Bytes prefix, std::vector<Bytes> packets) {
    Script(std::move(prefix), [packets = std::move(packets)](const Bytes&) { return packets; });
}

void Handset::Script(Bytes prefix, std::function<std::vector<Bytes>(const Bytes& request)> answer) {
    m_brain->Look([&] { m_brain->scripts[std::move(prefix)] = std::move(answer); });
}

void Handset::Send(const Bytes& packet) {
    SendWire(Frame(packet));
}

void Handset::SendWire(const Bytes& bytes) {
    m_brain->Change([&] {
        if (!m_brain->line)
            return;
        m_brain->outbox.SendNow(bytes);
        m_brain->outbox.Pump(*m_brain->line, Outbox::Clock::now());
    });
}

bool Handset::Emit(const Bytes& packet, const std::function<bool(const State&)>& isWanted) {
    return m_brain->Change([&] {
        if (!m_brain->line || !isWanted(m_brain->state))
            return false;
        m_brain->outbox.SendNow(Frame(packet));
        m_brain->outbox.Pump(*m_brain->line, Outbox::Clock::now());
        return true;
    });
}

bool Handset::EmitLog(uint16_t code, const Bytes& payload) {
    return Emit(LogPacket(code, 0, payload),
                [&](const State& state) { return state.traffic.SendsLog(code); });
}

bool Handset::EmitMessage(const Message& message) {
    return Emit(MessagePacket(message), [&](const State& state) {
        return state.traffic.SendsMessage(message.subsystem, message.kinds);
    });
}

bool Handset::EmitOldMessage(uint8_t level, const std::string& text) {
    return Emit(OldMessagePacket(level, text),
                [&](const State& state) { return state.traffic.SendsOldMessage(level); });
}

bool Handset::EmitEvent(uint16_t id, const Bytes& payload) {
    return Emit(EventPacket(id, payload), [](const State& state) { return state.traffic.events; });
}

void Handset::SetLatency(std::chrono::microseconds latency) {
    m_brain->Look([&] { m_brain->latency = latency; });
}

void Handset::SetChatter(int count) {
    m_brain->Look([&] { m_brain->chatter = count; });
}

void Handset::SetDataMode(bool on) {
    m_brain->Look([&] { m_brain->dataMode = on; });
}

bool Handset::DataMode() const {
    return m_brain->Look([this] { return m_brain->dataMode; });
}

} // namespace handset
