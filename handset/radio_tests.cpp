#include "handset/radio_tests.h"

#include <algorithm>

#include "handset/packet.h"
#include "handset/state.h"
#include "handset/state_commands.h"
#include "handset/unsolicited.h"

namespace handset {
namespace {

constexpr uint16_t kRecordCode = 0x117C;
constexpr uint8_t kRefused = 1;
constexpr int kStays = -1;
constexpr uint16_t kFirstPacketData = 256; // from here on the requests of EGPRS and HSDPA

/// A request: the stages in which it is accepted, the stage after it, and its records. GSM: 1 started, 2
/// camps, 3 idle, 4 traffic, 5 GPRS. WCDMA: 1 started, 2 idle, 3 pilot, 4 channel, 5 high-speed channels.
struct Rule {
    TestMode mode;
    uint16_t id;
    int least;
    int most;
    int next;
    std::vector<Bytes> records;
};

const std::vector<Rule>& Rules() {
    constexpr TestMode g = TestMode::Gsm;
    constexpr TestMode w = TestMode::Wcdma;
    static const std::vector<Rule> rules = {
        {g, 0, 0, 0, 1, {{0}}},
        {g, 1, 1, 5, 2, {{1, 1, 7}}},
        {g, 2, 2, 5, 3, {{2}}},
        {g, 3, 4, 4, 4, {}},
        {g, 4, 3, 4, 4, {{3, 0}}},
        {g, 5, 4, 4, 3, {{4}}},
        {g, 6, 1, 5, 0, {{5}}},
        {g, 7, 4, 4, 4, {{3, 0}}},
        {g, 256, 1, 5, 5, {{2}}},
        {g, 257, 5, 5, 5, {{64, 0, 0}, {64, 1, 0}}},
        {g, 258, 5, 5, 5, {}},
        {g, 259, 5, 5, 5, {}},
        {g, 260, 5, 5, 5, {{64, 0, 1}, {64, 1, 1}}},
        {g, 261, 5, 5, 5, {{64, 1, 1}}},
        {w, 0, 0, 0, 1, {{0}}},
        {w, 1, 1, 5, 0, {{1}}},
        {w, 2, 1, 5, 2, {{2}}},
        {w, 3, 2, 5, 3, {{3, 1, 0x12, 0x00, 0x34}}},
        {w, 4, 3, 5, 4, {{4, 1}, {5, 1}}},
        {w, 5, 4, 5, 4, {{4, 1}, {5, 1}}},
        {w, 256, 4, 4, 5, {{64, 1}}},
        {w, 257, 5, 5, 4, {{65, 1}}},
        {w, 258, 5, 5, 5, {{66, 1}}},
        {w, 259, 4, 5, kStays, {}},
        {w, 260, 4, 5, kStays, {}},
        {w, 261, 4, 5, kStays, {}},
        {w, 262, 4, 5, kStays, {}},
    };
    return rules;
}

const Rule* Find(TestMode mode, uint16_t id) {
    const auto found = std::find_if(Rules().begin(), Rules().end(),
                                    [&](const Rule& rule) { return rule.mode == mode && rule.id == id; });
    return found == Rules().end() ? nullptr : &*found;
}

uint16_t LogType(TestMode mode) {
    return mode == TestMode::Gsm ? 0x1005 : 0x1006;
}

bool AnswerTest(TestMode mode, State& phone, RequestReader& in, AnswerWriter& answer) {
    uint16_t id = 0;
    in.Take(id);
    answer.U16(id).U16(0).U16(0);
    if (mode == TestMode::Wcdma && id >= kFirstPacketData)
        answer.U8(0);
    answer.U8(phone.radio.CarryOut(mode, id, phone.traffic.SendsLog(kRecordCode)));
    return in.Good();
}

} // namespace

TestOutcome RadioTests::Decide(TestMode mode, uint16_t id) const {
    const Rule* rule = Find(mode, id);
    const bool isFree = m_running == TestMode::None || m_running == mode;
    if (rule == nullptr || !isFree || m_stage < rule->least || m_stage > rule->most)
        return {.status = kRefused};
    return {.records = rule->records, .after = delay};
}

uint8_t RadioTests::CarryOut(TestMode mode, uint16_t id, bool sendsRecords) {
    TestOutcome outcome = Decide(mode, id);
    if (auto& plan = plans[{mode, id}]; !plan.empty()) {
        outcome = plan.front();
        plan.erase(plan.begin());
    }
    const Rule* rule = Find(mode, id);
    if (outcome.status == 0 && rule != nullptr && rule->next != kStays) {
        m_stage = rule->next;
        m_running = m_stage == 0 ? TestMode::None : mode;
    }
    if (sendsRecords && logTypes.count(LogType(mode)) != 0)
        for (const Bytes& record : outcome.records)
            m_packets.emplace_back(
                outcome.after,
                LogPacket(kRecordCode, 0, AnswerWriter().U16(LogType(mode)).Data(record).Result()));
    return outcome.status;
}

bool AnswerFtmLog(State& phone, RequestReader& in, AnswerWriter& answer) {
    uint16_t command = 0;
    uint16_t unused = 0;
    uint16_t type = 0;
    in.Take(command);
    in.Take(unused);
    in.Take(unused);
    in.Take(type);
    if (in.Good() && command == 0)
        phone.radio.logTypes.insert(type);
    else if (in.Good())
        phone.radio.logTypes.erase(type);
    answer.U16(command).U16(0).U16(0);
    return in.Good();
}

bool AnswerGsmTest(State& phone, RequestReader& in, AnswerWriter& answer) {
    return AnswerTest(TestMode::Gsm, phone, in, answer);
}

bool AnswerWcdmaTest(State& phone, RequestReader& in, AnswerWriter& answer) {
    return AnswerTest(TestMode::Wcdma, phone, in, answer);
}

} // namespace handset
