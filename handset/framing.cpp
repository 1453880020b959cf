// The handset's own framing.
#include "handset/framing.h"

#include <array>

namespace handset {
namespace {

constexpr uint8_t kFlag = 0x7E;
constexpr uint8_t kEscape = 0x7D;
constexpr uint8_t kEscapeBit = 0x20;
constexpr size_t kChecksumSize = 2;
constexpr size_t kMaxFrame = 8192;

constexpr uint16_t ShiftByte(uint16_t value) {
    for (int bit = 0; bit < 8; ++bit)
        value = static_cast<uint16_t>((value & 1) ? (value >> 1) ^ 0x8408 : value >> 1);
    return value;
}

constexpr std::array<uint16_t, 256> MakeTable() {
    std::array<uint16_t, 256> table{};
    for (size_t i = 0; i < table.size(); ++i)
        table[i] = ShiftByte(static_cast<uint16_t>(i));
    return table;
}

constexpr std::array<uint16_t, 256> kTable = MakeTable();

void AppendEscaped(Bytes& wire, uint8_t byte) {
    if (byte == kFlag || byte == kEscape) {
        wire.push_back(kEscape);
        byte ^= kEscapeBit;
    }
    wire.push_back(byte);
}

} // namespace

uint16_t Checksum(const uint8_t* data, size_t size) {
    unsigned crc = 0xFFFF;
    for (size_t i = 0; i < size; ++i)
        crc = (crc >> 8) ^ kTable[(crc ^ data[i]) & 0xFF];
    return static_cast<uint16_t>(~crc);
}

Bytes Frame(const Bytes& packet, bool corrupt) {
    Bytes wire;
    wire.reserve(packet.size() + packet.size() / 8 + 5);
    uint16_t crc = Checksum(packet.data(), packet.size());
    if (corrupt && packet.empty())
        crc ^= 1;
    for (size_t i = 0; i < packet.size(); ++i) {
        const bool flipped = corrupt && i + 1 == packet.size();
        AppendEscaped(wire, static_cast<uint8_t>(packet[i] ^ (flipped ? 1 : 0)));
    }
    AppendEscaped(wire, static_cast<uint8_t>(crc & 0xFF));
    AppendEscaped(wire, static_cast<uint8_t>(crc >> 8));
    wire.push_back(kFlag);
    return wire;
}

std::optional<Bytes> Deframer::Take(const uint8_t* data, size_t size, size_t& used) {
    for (used = 0; used < size;) {
        uint8_t byte = data[used++];
        if (byte == kFlag) {
            std::optional<Bytes> packet = EndFrame();
            if (packet)
                return packet;
            continue;
        }
        if (byte == kEscape) {
            m_escaped = true;
            continue;
        }
        if (m_escaped)
            byte ^= kEscapeBit;
        m_escaped = false;
        if (m_frame.size() < kMaxFrame)
            m_frame.push_back(byte);
        else
            m_tooLong = true;
    }
    return std::nullopt;
}

std::optional<Bytes> Deframer::EndFrame() {
    Bytes frame;
    frame.swap(m_frame);
    const bool aborted = m_escaped || m_tooLong;
    m_escaped = false;
    m_tooLong = false;
    if (frame.empty() && !aborted)
        return std::nullopt;
    if (!aborted && frame.size() > kChecksumSize) {
        const size_t length = frame.size() - kChecksumSize;
        const uint16_t crc = Checksum(frame.data(), length);
        if (frame[length] == (crc & 0xFF) && frame[length + 1] == crc >> 8) {
            frame.resize(length);
            return frame;
        }
    }
    ++m_dropped;
    return std::nullopt;
}

void Deframer::Reset() {
    m_frame.clear();
    m_escaped = false;
    m_tooLong = false;
}

} // namespace handset
