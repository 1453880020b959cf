#include "link/extended_message.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "link/as_int.h"
#include "link/crc16.h"
#include "link/extended_message_text.h"
#include "link/format_expansion.h"
#include "link/message_queue.h"
#include "link/packet_codes.h"
#include "link/packet_view.h"

namespace {

constexpr size_t kTimeStampOffset = 4;
constexpr size_t kArgumentsOffset = 20;
constexpr size_t kArgumentSize = 4;
constexpr size_t kExpandedSize = 1024;

template <size_t iSize>
void CopyText(std::string_view text, char (&sOut)[iSize]) {
    sOut[text.copy(sOut, iSize - 1)] = '\0';
}

size_t TextsOffset(const PacketView& packet, size_t iArguments) {
    const size_t iAnnounced = kArgumentsOffset + iArguments * kArgumentSize;
    if (packet.Has(iAnnounced, 1))
        return iAnnounced;
    return kArgumentsOffset + std::min(iArguments, std::size(ExtendedMessage{}.aArgs)) * kArgumentSize;
}

bool Decode(const PacketView& packet, ExtendedMessage& message) {
    if (packet.U8(0) != kExtendedMessage)
        return false;
    message = {};
    message.iCmdCode = packet.U8(0);
    message.iTimeStampType = packet.U8(1);
    message.iNumArgs = packet.U8(2);
    message.iDropCount = packet.U8(3);
    for (size_t i = 0; i < std::size(message.aTimeStamp); ++i)
        message.aTimeStamp[i] = packet.U8(kTimeStampOffset + i);
    message.iLineNumber = packet.U16(12);
    message.iSubsystemID = packet.U16(14);
    message.iSubsystemMask = packet.U32(16);
    for (size_t i = 0; i < std::size(message.aArgs) && i < message.iNumArgs; ++i)
        message.aArgs[i] = packet.U32(kArgumentsOffset + i * kArgumentSize);
    const size_t iFormat = TextsOffset(packet, message.iNumArgs);
    const std::string_view format = packet.Text(iFormat, kMaxPacketSize);
    CopyText(format, message.sFormat);
    CopyText(packet.Text(iFormat + format.size() + 1, kMaxPacketSize), message.sFileName);
    return true;
}

} // namespace

bool ParseExtendedMessage(std::span<const unsigned char> packet, ExtendedMessage& message) {
    return Decode(PacketView(WithoutFcs(packet)), message);
}

bool ParseExtendedMessage(const unsigned char* pPacket, ExtendedMessage& message) {
    return Decode(PacketView({pPacket, kMaxPacketSize}), message);
}

void DescribeExtendedMessage(const ExtendedMessage& message, char* sOut) {
    char sText[kExpandedSize];
    ExpandFormat(message.sFormat, message.aArgs, sText);
    std::snprintf(sOut, kExtendedMessageTextSize, "Debug Msg: %d.%d - %s-%d\t%s", message.iSubsystemID,
                  AsInt(message.iSubsystemMask), message.sFileName, message.iLineNumber, sText);
}
