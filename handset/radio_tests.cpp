// The rules of the simulated radio tests, and the requests that drive them.
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
constexpr uint16_t kFirstPacketData = 256; // the requests of EGPRS and HSDPA start here

// The stages of a test.
enum Stage : int { kOff, kStarted };
enum GsmStage : int { kCamping = 2, kGsmIdle, kTraffic, kGprs };
enum WcdmaStage : int { kWcdmaIdle = 2, kPilot, kChannel, kHighSpeed };

/// A request of a test. It is accepted in the stages from `first` to `last`.
struct Rule {
    uint16_t id;
    int first;
    int last;
    int next;                   // the stage that it leads to, or kStays
    std::vector<Bytes> records; // the log records that follow
};

const std::vector<Rule>& Rules(TestMode mode) {
    static const std::vector<Rule> gsm = {
        {.id = 0, .first = kOff, .last = kOff, .next = kStarted, .records = {{0}}},
        {.id = 1, .first = kStarted, .last = kGprs, .next = kCamping, .records = {{1, 1, 7}}},
        {.id = 2, .first = kCamping, .last = kGprs, .next = kGsmIdle, .records = {{2}}},
        {.id = 3, .first = kTraffic, .last = kTraffic, .next = kTraffic, .records = {}},
        {.id = 4, .first = kGsmIdle, .last = kTraffic, .next = kTraffic, .records = {{3, 0}}},
        {.id = 5, .first = kTraffic, .last = kTraffic, .next = kGsmIdle, .records = {{4}}},
        {.id = 6, .first = kStarted, .last = kGprs, .next = kOff, .records = {{5}}},
        {.id = 7, .first = kTraffic, .last = kTraffic, .next = kTraffic, .records = {{3, 0}}},
        {.id = 256, .first = kStarted, .last = kGprs, .next = kGprs, .records = {{2}}},
        {.id = 257, .first = kGprs, .last = kGprs, .next = kGprs, .records = {{64, 0, 0}, {64, 1, 0}}},
        {.id = 258, .first = kGprs, .last = kGprs, .next = kGprs, .records = {}},
        {.id = 259, .first = kGprs, .last = kGprs, .next = kGprs, .records = {}},
        {.id = 260, .first = kGprs, .last = kGprs, .next = kGprs, .records = {{64, 0, 1}, {64, 1, 1}}},
        {.id = 261, .first = kGprs, .last = kGprs, .next = kGprs, .records = {{64, 1, 1}}},
    };
    static const std::vector<Rule> wcdma = {
        {.id = 0, .first = kOff, .last = kOff, .next = kStarted, .records = {{0}}},
        {.id = 1, .first = kStarted, .last = kHighSpeed, .next = kOff, .records = {{1}}},
        {.id = 2, .first = kStarted, .last = kHighSpeed, .next = kWcdmaIdle, .records = {{2}}},
        {.id = 3,
         .first = kWcdmaIdle,
         .last = kHighSpeed,
         .next = kPilot,
         .records = {{3, 1, 0x12, 0x00, 0x34}}},
        {.id = 4, .first = kPilot, .last = kHighSpeed, .next = kChannel, .records = {{4, 1}, {5, 1}}},
        {.id = 5, .first = kChannel, .last = kHighSpeed, .next = kChannel, .records = {{4, 1}, {5, 1}}},
        {.id = 256, .first = kChannel, .last = kChannel, .next = kHighSpeed, .records = {{64, 1}}},
        {.id = 257, .first = kHighSpeed, .last = kHighSpeed, .next = kChannel, .records = {{65, 1}}},
        {.id = 258, .first = kHighSpeed, .last = kHighSpeed, .next = kHighSpeed, .records = {{66, 1}}},
        {.id = 259, .first = kChannel, .last = kHighSpeed, .next = kStays, .records = {}},
        {.id = 260, .first = kChannel, .last = kHighSpeed, .next = kStays, .records = {}},
        {.id = 261, .first = kChannel, .last = kHighSpeed, .next = kStays, .records = {}},
        {.id = 262, .first = kChannel, .last = kHighSpeed, .next = kStays, .records = {}},
    };
    return mode == TestMode::Gsm ? gsm : wcdma;
}

const Rule* Find(TestMode mode, uint16_t id) {
    const std::vector<Rule>& rules = Rules(mode);
    const auto found =
        std::find_if(rules.begin(), rules.end(), [id](const Rule& rule) { return rule.id == id; });
    return found == rules.end() ? nullptr : &*found;
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
    if (rule == nullptr || !isFree || m_stage < rule->first || m_stage > rule->last)
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
        m_running = m_stage == kOff ? TestMode::None : mode;
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
