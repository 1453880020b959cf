// Sequences of the radio tests: what the phone does, which requests it gets, what comes out and is logged.
#pragma once

#include <atomic>
#include <thread>

#include "diag_fixture.h"

using handset::TestMode;
using handset::TestOutcome;

/// What the phone does instead of confirming: to the next requests of an id, in turn.
struct Plan {
    uint16_t iId;
    std::vector<TestOutcome> outcomes;
};

inline TestOutcome Refused(uint8_t iStatus = 5) {
    return {.status = iStatus};
}
/// Accepted; the records (id and values in hex) come before the answer, so that no time-out has to be long.
inline TestOutcome Says(std::vector<std::string> records = {}) {
    TestOutcome outcome{.after = std::chrono::milliseconds(-1)};
    for (const std::string& sRecord : records)
        outcome.records.push_back(Hex(sRecord));
    return outcome;
}
inline TestOutcome Silent() {
    return Says();
}

using Plans = std::vector<Plan>;
inline Plans Refuse(uint16_t iId) {
    return {{iId, {Refused()}}};
}
inline Plans Say(uint16_t iId, const std::vector<std::string>& records) {
    return {{iId, {Says(records)}}};
}
inline Plans Silence(uint16_t iId) {
    return Say(iId, {});
}

/// All lines of an operation, or the end of the last one where the others are those of another sequence.
struct ExpectedLines {
    ExpectedLines(Lines lines) : all(std::move(lines)) {}
    ExpectedLines(const char* sText) : sEnd(sText) {}
    Lines all;
    std::string sEnd;
};

/// One operation. The outcome is the result, the sessions (of "GEWH") that are active afterwards, and the
/// requests, as "mode/id" and the fields in hex ("true G 13/1 02 01 03, 13/2"; "-": no session). Lines are
/// the session's own without their four blanks, in order, those of LOG_FN with "> " in front; the
/// milliseconds of waits are left out.
struct Sequence {
    Plans plans;
    bool (*call)(Diag_FTM& diag);
    std::string sOutcome;
    ExpectedLines lines;
};

class RadioSessionTest : public DiagTest {
protected:
    static constexpr DWORD kShort_ms = 25;
    static constexpr DWORD kLong_ms = 20000;

    RadioSessionTest() { Reset(); }

    /// Brings phone and connection into the state in which a sequence begins.
    virtual void Begin() = 0;

    void Check(const std::vector<Sequence>& sequences) {
        for (const Sequence& sequence : sequences) {
            SCOPED_TRACE(sequence.sOutcome);
            CheckOne(sequence);
        }
    }
    void CheckOne(const Sequence& sequence) {
        Reset();
        Begin();
        // Records that overtake their answers need no time at all; then a wait that fails may be short.
        if (!sequence.plans.empty())
            m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, kShort_ms);
        m_phone.phone.WithState([&](handset::State& state) {
            if (!sequence.plans.empty())
                state.radio.delay = std::chrono::milliseconds(-1);
            for (const Plan& plan : sequence.plans)
                for (const TestMode eMode : {TestMode::Gsm, TestMode::Wcdma})
                    state.radio.plans[{eMode, plan.iId}] = plan.outcomes;
        });
        m_phone.phone.ClearRequests();
        m_log.Clear();
        const std::string sResult = sequence.call(m_diag) ? "true " : "false ";
        EXPECT_EQ(sResult + (Active().empty() ? "-" : Active()) + TestRequests(), sequence.sOutcome);
        const Lines lines = SessionLines();
        if (sequence.lines.sEnd.empty())
            EXPECT_EQ(lines, sequence.lines.all);
        else
            EXPECT_TRUE(lines.back().ends_with(sequence.lines.sEnd)) << lines.back();
    }

    /// A phone without a test, a connection without a session.
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
    Lines SessionLines() {
        Lines lines;
        for (std::string sLine : m_log.Lines()) {
            const std::string sKind = sLine.substr(0, 7) == "0x0002 " ? "> " : "";
            sLine.erase(0, 7);
            const size_t iTook = sLine.find(" took ");
            if (iTook != std::string::npos)
                sLine.erase(iTook + 6, sLine.find(" ms") - iTook - 6);
            if (sLine.starts_with("    "))
                lines.push_back(sKind + sLine.substr(4));
            else if (sLine.starts_with(" ") || sLine.starts_with("DIAG_"))
                lines.push_back(sKind + sLine);
        }
        return lines;
    }

    /// Calls an operation while the phone sends a test record every millisecond.
    bool WhileReporting(uint8_t iType, const std::string& sRecord, const std::function<bool()>& call) {
        const Bytes payload = Hex((iType == 5 ? "05 10 " : "06 10 ") + sRecord);
        m_phone.phone.WithState([](handset::State& state) { state.traffic.logs[1] = Bytes(64, 0xFF); });
        std::atomic<bool> bDone = false;
        std::thread phone([&] {
            for (; !bDone; std::this_thread::sleep_for(std::chrono::milliseconds(1)))
                m_phone.phone.EmitLog(0x117C, payload);
        });
        const bool bResult = call();
        bDone = true;
        phone.join();
        return bResult;
    }
    /// Sends a test record and waits until it has been taken.
    void Report(uint8_t iType, const std::string& sRecord) {
        m_phone.phone.WithState([](handset::State& state) { state.traffic.logs[1] = Bytes(64, 0xFF); });
        m_phone.phone.EmitLog(0x117C, Hex((iType == 5 ? "05 10 " : "06 10 ") + sRecord));
        EXPECT_TRUE(m_diag.IsPhoneConnected()); // answers come in order behind the record
    }
};

/// The two lines around a wait.
inline Lines Waited(const std::string& sTest, const std::string& sRecord, bool bCame) {
    const std::string sMessage = sTest + " BER message " + sRecord;
    return {" Starting wait for " + sMessage + "...",
            " Wait for " + sMessage + " took  ms, status = " + (bCame ? "1" : "0")};
}
/// A wait and the line that tells its outcome.
inline Lines Confirmed(const std::string& sTest, const std::string& sRecord, const std::string& sLabel,
                       bool bCame) {
    Lines lines = Waited(sTest, sRecord, bCame);
    lines.push_back("WaitFor" + sTest + "_BER_Update( " + sLabel + " = " + (bCame ? "PASS" : "FAIL"));
    return lines;
}
/// The line of a request that was answered.
inline Lines Sent(const std::string& sRequest, int iStatus = 0) {
    return {sRequest + " = PASS, status = " + std::to_string(iStatus)};
}
/// An operation that clears the status of its test.
inline Lines Cleared(const std::string& sEntry, const std::string& sTest = "EGPRS") {
    return {"> " + sEntry, "FTM_" + sTest + "_BER_ClearStatus = PASS"};
}
/// Parts of expected lines, one after the other.
inline Lines operator+(Lines first, const Lines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}
