// The radio tests of the simulated handset: requests that it accepts or refuses, and the log records in which
// it tells what came of them.
#pragma once

#include <chrono>
#include <map>
#include <set>
#include <utility>

#include "handset/bytes.h"
#include "handset/delayed.h"

namespace handset {

/// The mode field of a test's requests.
enum class TestMode : uint16_t { None = 0, Gsm = 13, Wcdma = 16 };

/// What comes of a test request.
struct TestOutcome {
    uint8_t status = 0;           // 0: accepted
    std::vector<Bytes> records{}; // id and values each, in order
    std::chrono::milliseconds after{1};
};

/// One radio, on which one test runs. It refuses what the test's stage does not allow, such as a test that is
/// started while another runs, or traffic without a broadcast channel. No lock of its own.
class RadioTests {
public:
    /// The records come this long after the answer; negative: before it.
    std::chrono::milliseconds delay{1};
    /// What the next requests of a mode and id come to, in turn; after that, what they come to by themselves.
    /// An accepted one moves the test on whatever its records say.
    std::map<std::pair<TestMode, uint16_t>, std::vector<TestOutcome>> plans;
    /// The FTM log types that are switched on: no records otherwise.
    std::set<uint16_t> logTypes;

    /// Carries a request out and gives its status. `sendsRecords`: the log mask lets them through.
    uint8_t CarryOut(TestMode mode, uint16_t id, bool sendsRecords);
    /// The records since the last call, each with its delay.
    Delayed::Packets TakePackets() { return std::exchange(m_packets, {}); }

private:
    TestOutcome Decide(TestMode mode, uint16_t id) const;

    TestMode m_running = TestMode::None;
    int m_stage = 0; // of the running test, as in radio_tests.cpp; 0: none runs
    Delayed::Packets m_packets;
};

} // namespace handset
