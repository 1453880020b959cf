// Checking one command at a time: its request, what it makes of an answer, its log lines.
#pragma once

#include <sstream>

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

/// Makes one call, with preset out-values, and gives its Outcome.
using Call = std::string (*)(Diag_FTM& diag);

using Lines = std::vector<std::string>;

class DiagTest : public PhoneTest {
protected:
    /// What a call makes of an answer that is the same for every request.
    std::string Answered(Call call, const Bytes& answer) {
        m_log.Clear();
        m_phone.phone.ClearRequests();
        m_phone.Answer("", answer);
        return call(m_diag);
    }

    /// What a call makes of a phone that refuses everything.
    std::string Unanswered(Call call) {
        m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 20);
        return Answered(call, Hex("13"));
    }

    /// One request, its answer, what comes out, and the log lines of the operation and its result.
    void Check(Call call, const std::string& sRequest, const Bytes& answer, const std::string& sOutcome,
               const Lines& operation, const Lines& result = {}) {
        EXPECT_EQ(Answered(call, answer), sOutcome) << sRequest;
        EXPECT_EQ(m_phone.Requests(), Lines{sRequest});
        EXPECT_EQ(m_log.Of(LOG_FN), operation);
        EXPECT_EQ(m_log.Of(LOG_RET), result);
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

    handset::State State() {
        handset::State copy;
        m_phone.phone.WithState([&](handset::State& state) { copy = state; });
        return copy;
    }
};

/// A byte as many times as it takes, in hex with blanks.
inline std::string Times(size_t iCount, const std::string& sByte) {
    std::string text;
    for (size_t i = 0; i < iCount; ++i)
        text += (i == 0 ? "" : " ") + sByte;
    return text;
}
