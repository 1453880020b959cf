// The public face of the simulated handset.
#include "handset/handset.h"

#include "handset/brain.h"
#include "handset/unsolicited.h"

namespace handset {

Handset::Handset() : m_brain(std::make_unique<Brain>()) {}

Handset::~Handset() {
    m_brain->Unplug(); // while callbacks may still ask for TtyPath
}

std::string Handset::TtyPath() const {
    return m_brain->Look([](const Brain& brain) { return brain.line ? brain.line->Path() : std::string(); });
}

void Handset::Unplug() {
    m_brain->Unplug();
}

void Handset::Replug() {
    m_brain->Replug();
}

void Handset::OnPlugChange(std::function<void()> callback) {
    m_brain->Change([&](Brain& brain) { brain.plugCallbacks.push_back(std::move(callback)); });
}

void Handset::WithFiles(const std::function<void(FileSystem&)>& work) {
    m_brain->Change([&](Brain& brain) { work(brain.files); });
}

void Handset::WithState(const std::function<void(State&)>& work) {
    m_brain->Change([&](Brain& brain) { work(brain.state); });
}

std::vector<Bytes> Handset::Requests() const {
    return m_brain->Look([](const Brain& brain) { return brain.record.Requests(); });
}

void Handset::ClearRequests() {
    m_brain->Change([](Brain& brain) { brain.record.Clear(); });
}

bool Handset::WaitForRequests(size_t count, std::chrono::milliseconds limit) const {
    return m_brain->WaitForRequests(count, limit);
}

Bytes Handset::WireBytes() const {
    return m_brain->Look([](const Brain& brain) { return brain.record.Wire(); });
}

void Handset::SetRecordLimit(size_t requests) {
    m_brain->Change([&](Brain& brain) { brain.record.SetLimit(requests); });
}

size_t Handset::DroppedFrames() const {
    return m_brain->Look([](const Brain& brain) { return brain.droppedFrames; });
}

void Handset::OnRequest(std::function<void(const Bytes& request)> callback) {
    m_brain->Change([&](Brain& brain) { brain.requestCallback = std::move(callback); });
}

void Handset::Misbehave(Misbehaviour rule) {
    m_brain->Change([&](Brain& brain) { brain.misbehaviours.Add(std::move(rule)); });
}

void Handset::Behave() {
    m_brain->Change([](Brain& brain) {
        brain.misbehaviours.Clear();
        brain.held.clear();
    });
}

void Handset::Script(Bytes prefix, std::vector<Bytes> packets) {
    Script(std::move(prefix), [packets = std::move(packets)](const Bytes&) { return packets; });
}

void Handset::Script(Bytes prefix, std::function<std::vector<Bytes>(const Bytes& request)> answer) {
    m_brain->Change([&](Brain& brain) { brain.scripts[std::move(prefix)] = std::move(answer); });
}

void Handset::Send(const Bytes& packet) {
    SendWire(Frame(packet));
}

void Handset::SendWire(const Bytes& bytes) {
    m_brain->Change([&](Brain& brain) {
        if (brain.line == nullptr)
            return;
        brain.outbox.SendNow(bytes);
        brain.outbox.Pump(*brain.line, Outbox::Clock::now());
    });
}

bool Handset::Emit(const Bytes& packet, const std::function<bool(const State&)>& isWanted) {
    return m_brain->Change([&](Brain& brain) {
        if (!brain.line || !isWanted(brain.state))
            return false;
        brain.outbox.SendNow(Frame(packet));
        brain.outbox.Pump(*brain.line, Outbox::Clock::now());
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
    m_brain->Change([&](Brain& brain) { brain.latency = latency; });
}

void Handset::SetChatter(int count) {
    m_brain->Change([&](Brain& brain) { brain.chatter = count; });
}

void Handset::SetDataMode(bool on) {
    m_brain->Change([&](Brain& brain) { brain.dataMode = on; });
}

bool Handset::DataMode() const {
    return m_brain->Look([](const Brain& brain) { return brain.dataMode; });
}

} // namespace handset
