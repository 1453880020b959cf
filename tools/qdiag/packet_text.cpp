#include "qdiag/packet_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "common/text.h"
#include "qdiag/hex.h"

namespace tools::qdiag {
namespace {

enum PacketKind : unsigned char { kLog = 0x10, kOldMessage = 0x1F, kEvents = 0x60, kMessage = 0x79 };

constexpr size_t kFcs = 2;

std::string DescribeEvents(std::span<const unsigned char> packet) {
    constexpr size_t kId = 3;
    if (packet.size() < kId + 2)
        return "Event report without an event";
    const int id = packet[kId] | packet[kId + 1] << 8;
    char name[kEventTextSize];
    const bool hasName = GetEventText(id, name);
    return "Event " + std::to_string(id) + (hasName ? std::string(": ") + name : "");
}

std::string DescribeResponse(std::span<const unsigned char> packet) {
    constexpr size_t kShown = 16;
    return "Response, " + std::to_string(packet.size()) +
           " bytes: " + HexText(packet.first(std::min(packet.size(), kShown)), " ") +
           (packet.size() > kShown ? " ..." : "");
}

} // namespace

bool IsUnsolicited(std::span<const unsigned char> packet) {
    if (packet.size() >= 3 && packet[0] == kEvents)
        return packet[1] != 0 || packet[2] != 0; // without events: the response to a request
    return !packet.empty() && (packet[0] == kLog || packet[0] == kOldMessage || packet[0] == kMessage);
}

PacketText::PacketText() {
    m_connection.SetLogFlags(LOG_ASYNC);
    m_connection.ConfigureLibraryTextLogCallBack(&m_text, &PacketText::TakeText);
}

void PacketText::TakeText(unsigned short, unsigned char* record, void* text) {
    // Several calls may describe one packet; their texts are joined into one line.
    std::string piece = reinterpret_cast<const TextLogRecord*>(record)->sText;
    std::ranges::replace(piece, '\t', ' ');
    while (piece.starts_with('\n'))
        piece.erase(0, 1);
    while (piece.ends_with('\n'))
        piece.pop_back();
    auto& line = *static_cast<std::string*>(text);
    line += (line.empty() || piece.empty() ? "" : "  ") + Printable(piece);
}

std::string PacketText::DescribeMessage(std::span<const unsigned char> packet) {
    std::array<unsigned char, kMaxPacketSize> buffer{};
    std::copy_n(packet.begin(), std::min(packet.size(), buffer.size()), buffer.begin());
    m_text.clear();
    m_messages.AddUserAsyncLogMessageToTextLog(LOG_ASYNC, buffer.data(), true, false);
    return m_text;
}

std::string PacketText::Describe(std::span<const unsigned char> packet) {
    if (!IsUnsolicited(packet))
        return DescribeResponse(packet);
    return packet[0] == kEvents ? DescribeEvents(packet) : DescribeMessage(packet);
}

void PacketText::Print(const std::string& lead, std::span<const unsigned char> packet, bool withBytes) {
    const auto content = packet.first(packet.size() - std::min(packet.size(), kFcs));
    std::string text = lead + Describe(content) + "\n";
    if (withBytes)
        text += std::string(lead.size(), ' ') + HexText(content, " ") + "\n";
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

} // namespace tools::qdiag
