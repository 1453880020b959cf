// Packets of the phone as lines of text.
#pragma once

#include <span>
#include <string>

#include "quillet.h"

namespace tools::qdiag {

/// IsUnasked tells whether a packet is one that the phone sends unasked: a log record, a message or an event
/// report.
bool IsUnasked(std::span<const unsigned char> packet);

/// PacketText describes packets. It has a connection of its own, which is never opened, so that the log of
/// the one that talks to the phone stays as it is. One thread.
class PacketText {
public:
    PacketText();

    /// Print prints a packet (with its two FCS bytes) as a line that begins with `lead`, and with `withBytes`
    /// a second line of its bytes, the FCS left out.
    void Print(const std::string& lead, std::span<const unsigned char> packet, bool withBytes);

private:
    static void TakeText(unsigned short size, unsigned char* record, void* text);

    std::string Describe(std::span<const unsigned char> packet);
    std::string DescribeMessage(std::span<const unsigned char> packet);

    DiagConnection m_connection{0};
    MessageText m_messages{m_connection};
    std::string m_text; // what the library said about the packet
};

} // namespace tools::qdiag
