// Delayed responses.
#include "handset/delayed.h"

#include "handset/packet.h"
#include "handset/state.h"
#include "handset/state_commands.h"

namespace handset {

Bytes Delayed::Announce(const Bytes& head) {
    if (++m_lastId == 0)
        ++m_lastId;
    uint16_t count = 0;
    for (const DelayedResponse& response : plan) {
        const auto id = static_cast<uint16_t>(m_lastId + response.idOffset);
        AnswerWriter packet(head);
        packet.U32(response.status).U16(id).U16(++count).Data(response.data);
        m_packets.emplace_back(response.after, packet.Result());
    }
    return AnswerWriter(head).U32(announcedStatus).U16(m_lastId).U16(0).Result();
}

bool AnswerDelayed(State& phone, RequestReader&, AnswerWriter& answer) {
    answer = AnswerWriter(phone.delayed.Announce(answer.Result()));
    return true;
}

} // namespace handset
