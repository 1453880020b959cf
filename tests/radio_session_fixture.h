// Sequences of the radio tests: the phone's behaviour, the requests that it receives, the outcome and the
// log.
#pragma once

#include <atomic>
#include <map>
#include <regex>
#include <thread>

#include "diag_fixture.h"

using handset::TestMode;
using handset::TestOutcome;

inline TestOutcome Refused() {
    return {.status = 5};
}
/// Accepts a request. The records (id and values in hex) arrive before the response, so that time-outs can be
/// short.
inline TestOutcome Says(const std::vector<std::string>& records = {}) {
    TestOutcome outcome{.after = std::chrono::milliseconds(-1)};
    for (const std::string& sRecord : records)
        outcome.records.push_back(Hex(sRecord));
    return outcome;
}

/// What the phone does instead of confirming: for each request id, the outcomes of its next requests.
using Plans = std::map<uint16_t, std::vector<TestOutcome>>;
inline Plans Refuse(uint16_t iId) {
    return {{iId, {Refused()}}};
}
inline Plans Say(uint16_t iId, const std::vector<std::string>& records) {
    return {{iId, {Says(records)}}};
}
inline Plans Silence(uint16_t iId) {
    return Say(iId, {});
}

using Operation = bool (*)(Diag_FTM& diag);
#define OPERATION(METHOD, ...) [](Diag_FTM& diag) { return diag.METHOD(__VA_ARGS__); }

/// One operation. The outcome consists of the result, the sessions (of "GEWH") that are active afterwards,
/// and the requests as "mode/id" and the fields in hex: "true G 13/1 02 01 03, 13/2". "-" means no session.
struct Sequence {
    Plans plans;
    Operation call;
    std::string sOutcome;
    /// The end of the last log line.
    const char* sLogged;
};

using Sequences = std::vector<Sequence>;

class RadioSessionTest : public DiagTest {
protected:
    static constexpr DWORD kShort_ms = 25;
    static constexpr DWORD kLong_ms = 20000;

    RadioSessionTest() { Reset(); }

    void Begin(const std::vector<Operation>& before) {
        for (const Operation call : before)
            EXPECT_TRUE(call(m_diag));
    }
    /// Runs operations, which must succeed, and returns their log lines with the times replaced by N.
    std::string LogOf(const std::vector<Operation>& calls) {
        m_log.Clear();
        Begin(calls);
        std::string text;
        for (const std::string& sLine : m_log.Lines())
            text += sLine + "\n";
        return std::regex_replace(text, std::regex("took [0-9]+ ms"), "took N ms");
    }
    /// Checks each sequence separately, after the operations in `before`.
    void Check(const std::vector<Operation>& before, const Sequences& sequences) {
        for (const Sequence& sequence : sequences) {
            Reset();
            Begin(before);
            // Records that arrive before their responses need no wait, so a wait that fails may be short.
            if (!sequence.plans.empty())
                m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, kShort_ms);
            m_phone.phone.WithState([&](handset::State& state) {
                if (!sequence.plans.empty())
                    state.radio.delay = std::chrono::milliseconds(-1);
                for (const auto& [iId, outcomes] : sequence.plans)
                    for (const TestMode eMode : {TestMode::Gsm, TestMode::Wcdma})
                        state.radio.plans[{eMode, iId}] = outcomes;
            });
            m_phone.phone.ClearRequests();
            m_log.Clear();
            const std::string sResult = sequence.call(m_diag) ? "true " : "false ";
            EXPECT_EQ(sResult + (Active().empty() ? "-" : Active()) + TestRequests(), sequence.sOutcome);
            const std::string sLast = m_log.Lines().back();
            EXPECT_TRUE(sLast.ends_with(sequence.sLogged)) << sLast;
        }
    }

    /// Resets the phone to no test and the connection to no session.
    void Reset() {
        m_phone.phone.WithState([](handset::State& state) { state.radio = {}; });
        m_diag.FTM_GSM_BER_StopSession();
        m_diag.FTM_WCDMA_BER_StopSession();
        m_diag.FTM_HSDPA_BER_StopSession();
        m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, kLong_ms);
        m_diag.ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, kLong_ms);
    }

    std::string TestRequests() {
        std::string text;
        for (const Bytes& request : m_phone.phone.Requests()) {
            if (request.size() < 10 || (request[2] != 13 && request[2] != 16))
                continue;
            text += (text.empty() ? " " : ", ") + std::to_string(request[2]) + "/" +
                    std::to_string(request[4] | request[5] << 8);
            if (request.size() > 10)
                text += " " + handset::ToHex(Bytes(request.begin() + 10, request.end()));
        }
        return text;
    }
    std::string Active() {
        std::string active;
        const RadioSession sessions[] = {RadioSession::Gsm, RadioSession::Egprs, RadioSession::Wcdma,
                                         RadioSession::Hsdpa};
        for (size_t i = 0; i < 4; ++i)
            if (m_diag.IsRadioSessionActive(sessions[i]))
                active += "GEWH"[i];
        return active;
    }
    /// Sends a test record and waits until the connection has processed it.
    void Report(uint8_t iType, const std::string& sRecord) {
        m_phone.phone.WithState([](handset::State& state) { state.traffic.logs[1] = Bytes(64, 0xFF); });
        m_phone.phone.EmitLog(0x117C, Hex((iType == 5 ? "05 10 " : "06 10 ") + sRecord));
        EXPECT_TRUE(m_diag.IsPhoneConnected()); // the response arrives after the record
    }
    /// Calls an operation while the phone sends a GSM test record every millisecond.
    bool WhileReporting(const std::string& sRecord, const std::function<bool()>& call) {
        Report(5, "FF");
        std::atomic<bool> bDone = false;
        std::thread phone([&] {
            for (; !bDone; std::this_thread::sleep_for(std::chrono::milliseconds(1)))
                m_phone.phone.EmitLog(0x117C, Hex("05 10 " + sRecord));
        });
        const bool bResult = call();
        bDone = true;
        phone.join();
        return bResult;
    }
};
