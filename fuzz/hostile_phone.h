// A handset whose responses are the fuzzer's bytes.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "input.h"
#include "link/event_listener.h"
#include "link/packet_codes.h"
#include "link/serial_line.h"

// The first byte of a packet in the input says how the packet is made. Its low bits are the number of bytes
// copied from the request to the start of the packet, so that headers are correct.
constexpr unsigned kEchoedMask = 0x0F;
constexpr unsigned kFilledUp = 0x20; // padded to its size when the input ends early
constexpr unsigned kSilent = 0x40;   // no packet
constexpr unsigned kByItself = 0x80; // unsolicited; the response follows

/// TakeResponse takes the response to a request from the input; false when there is none. Unsolicited packets
/// before it go to `deliver`, with FCS. When the input ends, the handset falls silent, but it always answers
/// a loopback.
template <class Deliver>
bool TakeResponse(Input& input, std::span<const unsigned char> request, std::vector<unsigned char>& packet,
                  Deliver deliver) {
    packet.assign(request.begin(), request.end());
    if (request[0] == kLoopbackRequest)
        return true;
    for (;;) {
        const unsigned iHow = input.IsEmpty() ? kSilent : input.Byte();
        if ((iHow & kSilent) != 0)
            return false;
        const auto echoed = request.first(std::min<size_t>(iHow & kEchoedMask, request.size()));
        const size_t iSize = input.Count();
        const auto bytes = input.Bytes(iSize);
        packet.assign(echoed.begin(), echoed.end());
        packet.insert(packet.end(), bytes.begin(), bytes.end());
        if ((iHow & kFilledUp) != 0)
            packet.resize(echoed.size() + iSize, input.Byte());
        if ((iHow & kByItself) == 0)
            return true;
        packet.resize(packet.size() + 2);
        deliver(packet);
    }
}

/// HostileLine is a line to that phone, in the calling thread, so that nothing waits.
class HostileLine : public Transport {
public:
    explicit HostileLine(Input& input) : m_input(input) {}

    void Start(const LineOwner& owner) override { m_owner.emplace(owner); }
    void Stop() override {}
    bool Open(DWORD) override { return true; }
    void Close() override {}
    PortError LastError() const override { return PortError::None; }
    bool OpensOnDemand() const override { return false; }
    bool Exchange(const LineRequest& request, LineResponse& response) override {
        std::vector<unsigned char> packet;
        const bool bAnswered =
            TakeResponse(m_input, request.bytes, packet,
                         [this](std::span<unsigned char> bytes) { m_owner->listener.ReceivePacket(bytes); });
        response.iLength = static_cast<unsigned short>(std::min<size_t>(packet.size(), kMaxPacketSize));
        response.item.length = response.iLength;
        std::copy_n(packet.begin(), response.iLength, response.item.data);
        return bAnswered && !packet.empty() && packet[0] == request.iExpectedCode;
    }
    bool SwitchToDiagMode() override { return false; }
    bool AddListener(CQLibEvents_Listener*, CQLibEvents_Filter*) override { return false; }
    void RemoveListener(CQLibEvents_Listener*) override {}
    SerialControls* Serial() override { return nullptr; }

private:
    Input& m_input;
    std::optional<LineOwner> m_owner;
};
