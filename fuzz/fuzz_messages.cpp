// Unsolicited traffic: debug messages with their formats, events, log records.
#include <vector>

#include "input.h"
#include "link/connection_access.h"
#include "link/event_names.h"
#include "link/extended_message.h"
#include "link/extended_message_text.h"
#include "link/format_expansion.h"
#include "qlib/diag_ftm.h"

namespace {

void Expand(Input& input) {
    DWORD aArguments[4];
    for (DWORD& iArgument : aArguments)
        iArgument = input.Value<DWORD>();
    const std::span arguments(aArguments, input.Byte() % 5);
    const size_t iRoom = input.Count() + 1;
    const auto pOut = Area<char>(iRoom);
    const size_t iLength = ExpandFormat(input.Text().c_str(), arguments, {pOut.get(), iRoom});
    Require(iLength < iRoom && iLength == std::strlen(pOut.get()));
}

/// Replays a packet to a connection without a handset.
void Receive(Diag_FTM& diag, std::vector<unsigned char> packet) {
    ExtendedMessage message;
    if (ParseExtendedMessage(packet, message))
        DescribeExtendedMessage(message, Area<char>(kExtendedMessageTextSize).get());
    ConnectionAccess(diag).ReplayPacket(packet);
    diag.DumpAsyncMessageToTextLog(LOG_ASYNC, true, true, true);
    diag.DIAG_ClearCommandResponseQueue();
    packet.resize(kMaxPacketSize);
    diag.AddUserAsyncLogMessageToTextLog(LOG_ASYNC, packet.data(), true, true);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize) {
    static Diag_FTM diag(nullptr, 1);
    diag.SetLogFlags(~0U);
    diag.DIAG_SetPhoneLoggingState(true);
    Input input(pData, iSize);
    switch (input.Byte() % 3) {
        case 0:
            Expand(input);
            break;
        case 1:
            GetEventText(input.Value<int>(), Area<char>(kEventTextSize).get());
            break;
        default: {
            const auto bytes = input.Bytes(kMaxPacketSize);
            Receive(diag, {bytes.begin(), bytes.end()});
        }
    }
    return 0;
}
