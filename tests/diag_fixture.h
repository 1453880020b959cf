// Checking one command at a time: its request, what it makes of an answer, its log lines.
#pragma once

#include <functional>
#include <sstream>
#include <utility>

#include "eventually.h"
#include "handset/state.h"
#include "handset/unsolicited.h"
#include "phone_fixture.h"

/// The result of a call and its out-values (numbers in hex), as one text.
template <class... Values>
std::string Outcome(bool bResult, const Values&... values) {
    std::ostringstream text;
    text << (bResult ? "true" : "false") << std::hex;
    ((text << ' ' << +values), ...);
    return text.str();
}

/// Makes one call and gives its Outcome. Its out-values are parameters, preset by their defaults.
using Call = std::function<std::string(Diag_FTM& diag)>;

using Lines = std::vector<std::string>;

class DiagTest : public PhoneTest {
protected:
    /// What a call makes of an answer that is the same for every request.
    std::string Answered(const Call& call, const Bytes& answer) {
        m_log.Clear();
        m_phone.phone.ClearRequests();
        m_phone.Answer("", answer);
        return call(m_diag);
    }

    /// What a call makes of a phone that refuses everything.
    std::string Unanswered(const Call& call) {
        const DWORD iFormer_ms = m_diag.GetTimeOut(QMSL_TimeOut_SyncRequest);
        m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 20);
        const std::string sOutcome = Answered(call, Hex("13"));
        EXPECT_TRUE(m_phone.phone.WaitForRequests(1)); // what comes next is not answered to this request
        m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, iFormer_ms);
        return sOutcome;
    }

    /// One request, its answer, what comes out, the log lines of the operation and its result, and what comes
    /// out when the phone does not answer.
    void Check(const Call& call, const std::string& sRequest, const Bytes& answer,
               const std::string& sOutcome, const std::string& sUnanswered, const Lines& operation,
               const Lines& result = {}) {
        EXPECT_EQ(Answered(call, answer), sOutcome) << sRequest;
        EXPECT_EQ(m_phone.Requests(), Lines{sRequest});
        EXPECT_EQ(m_log.Of(LOG_FN), operation);
        EXPECT_EQ(m_log.Of(LOG_RET), result);
        EXPECT_EQ(Unanswered(call), sUnanswered) << sRequest;
        EXPECT_EQ(m_log.Of(LOG_ERR).size(), 1u) << sRequest;
    }

    struct AnswerRow {
        Call call;
        const char* sAnswer;
        const char* sOutcome;
    };
    void CheckAnswers(const std::vector<AnswerRow>& rows) {
        for (const AnswerRow& row : rows)
            EXPECT_EQ(Answered(row.call, Hex(row.sAnswer)), row.sOutcome) << row.sAnswer;
    }

    /// Calls that the phone answers by itself.
    void CheckCalls(const std::vector<std::pair<Call, std::string>>& steps) {
        for (size_t i = 0; i < steps.size(); ++i)
            EXPECT_EQ(steps[i].first(m_diag), steps[i].second) << i;
    }

    /// The packets that wait in the phone-log queue.
    DWORD Waiting() {
        DWORD iSize = 0;
        m_diag.DIAG_GetPhoneLogQueueSize(iSize);
        return iSize;
    }
    /// Waits until that many packets wait.
    bool WaitFor(DWORD iPackets) {
        return Eventually([&] { return Waiting() >= iPackets; });
    }
};

/// A byte as many times as it takes, in hex with blanks.
inline std::string Times(size_t iCount, const std::string& sByte) {
    std::string text;
    for (size_t i = 0; i < iCount; ++i)
        text += (i == 0 ? "" : " ") + sByte;
    return text;
}
