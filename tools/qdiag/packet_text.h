// Describes the phone's packets as lines of text.
#pragma once

#include <span>
#include <string>

#include "quillet.h"

namespace tools::qdiag {

/// Returns true for a packet that the phone sends unsolicited: a log record, a message or an event report.
bool IsUnsolicited(std::span<const unsigned char> packet);

/// PacketText describes packets. It uses a connection of its own, which is never opened, so that nothing is
/// added to the text log of the connection to the phone. One thread.
class PacketText {
public:
    PacketText();

    /// Prints a packet, whose last two bytes are its FCS, as a line that begins with `lead`. With
    /// `withBytes`, a second line shows the bytes without the FCS.
    void Print(const std::string& lead, std::span<const unsigned char> packet, bool withBytes);

private:
    static void TakeText(unsigned short size, unsigned char* record, void* text);

    std::string Describe(std::span<const unsigned char> packet);
    std::string DescribeMessage(std::span<const unsigned char> packet);

    DiagConnection m_connection{0};
    MessageText m_messages{m_connection};
    std::string m_text; // the library's description of the packet
};

} // namespace tools::qdiag
