// Checks one command at a time: its request, and what it reads from a response.
#pragma once

#include <functional>
#include <sstream>

#include "eventually.h"
#include "handset/state.h"
#include "handset/unsolicited.h"
#include "phone_fixture.h"

/// Returns the result of a call and its out-values (numbers in hex) as one text.
template <class... Values>
std::string Outcome(bool bResult, const Values&... values) {
    std::ostringstream text;
    text << (bResult ? "true" : "false") << std::hex;
    ((text << ' ' << +values), ...);
    return text.str();
}

/// Makes one call and returns its Outcome. The out-values are parameters, whose defaults preset them.
using Call = std::function<std::string(Diag_FTM& diag)>;

class DiagTest : public PhoneTest {
protected:
    /// Returns the outcome of a call when every request gets the same response.
    std::string Answered(const Call& call, const Bytes& answer) {
        m_log.Clear();
        m_phone.phone.ClearRequests();
        m_phone.Answer("", answer);
        return call(m_diag);
    }

    /// Returns the outcome of a call when the phone refuses every request.
    std::string Unanswered(const Call& call) {
        const DWORD iFormer_ms = m_diag.GetTimeOut(QMSL_TimeOut_SyncRequest);
        m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 20);
        const std::string sOutcome = Answered(call, Hex("13"));
        EXPECT_TRUE(m_phone.phone.WaitForRequests(1)); // lest this response answers a later request
        m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, iFormer_ms);
        return sOutcome;
    }

    /// Checks the request of a call, its outcome for a response, the log line of the operation, and that the
    /// call fails without a response.
    void Check(const Call& call, const std::string& sRequest, const std::string& sAnswer,
               const std::string& sOutcome, const std::string& sOperation) {
        EXPECT_EQ(Answered(call, Hex(sAnswer)), sOutcome) << sRequest;
        EXPECT_EQ(m_phone.Requests(), Lines{sRequest});
        EXPECT_TRUE(sOperation.empty() || m_log.Has(LOG_FN, sOperation)) << sOperation;
        EXPECT_TRUE(Unanswered(call).starts_with("false")) << sRequest;
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
};

/// Returns a byte `iCount` times, in hex with blanks.
inline std::string Times(size_t iCount, const std::string& sByte) {
    std::string text;
    for (size_t i = 0; i < iCount; ++i)
        text += (i == 0 ? "" : " ") + sByte;
    return text;
}
