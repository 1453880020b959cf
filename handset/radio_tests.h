// The radio tests of the simulated handset: requests that it accepts or refuses, and log records with their
// results.
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

/// The result of a test request.
struct TestOutcome {
    uint8_t status = 0;           // 0: accepted
    std::vector<Bytes> records{}; // in order, each with its id and values
    std::chrono::milliseconds after{1};
};

/// One radio, which runs one test at a time. It refuses requests that the stage of the test does not allow,
/// such as the start of a second test, or traffic without a broadcast channel. No lock of its own.
class RadioTests {
public:
    /// The records follow the response after this time; negative: they precede it.
    std::chrono::milliseconds delay{1};
    /// Planned results of the next requests with a mode and id, in order. Without a plan the stage decides.
    /// An accepted request always advances the test, whatever its records say.
    std::map<std::pair<TestMode, uint16_t>, std::vector<TestOutcome>> plans;
    /// The FTM log types that are switched on. Other records are not sent.
    std::set<uint16_t> logTypes;

    /// Carries out a request and returns its status. `sendsRecords`: the log mask allows the records.
    uint8_t CarryOut(TestMode mode, uint16_t id, bool sendsRecords);
    /// Takes the records since the last call, each with its delay.
    Delayed::Packets TakePackets() { return std::exchange(m_packets, {}); }

    /// The test that runs, and its stage.
    TestMode Running() const { return m_running; }
    int Stage() const { return m_stage; }

private:
    TestOutcome Decide(TestMode mode, uint16_t id) const;

    TestMode m_running = TestMode::None;
    int m_stage = 0; // of the running test, as in radio_tests.cpp; 0: none runs
    Delayed::Packets m_packets;
};

} // namespace handset
