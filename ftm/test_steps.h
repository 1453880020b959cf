// The steps of the radio-test sessions: a request that the phone accepts, a record that confirms it, and a
// log line for each.
#pragma once

#include <functional>

#include "diag/command.h"
#include "diag/log_masks.h"
#include "link/event_listener.h"
#include "link/radio_test_status.h"
#include "link/text_log.h"

/// The outcome of one test request.
struct TestResponse {
    bool bExchanged;
    unsigned char iStatus;
    bool Accepted() const { return bExchanged && iStatus == 0; }
};

/// The clock of a wait.
enum class WaitClock {
    Ticks, // fails at once with a time-out of 0
    Timer, // a timer that stays in the connection's list; checks the status at least once
};

/// TestSteps is shared code of the test sessions. Each session has an instance of its own. Caller's thread.
/// The frame and the log masks must outlive it.
class TestSteps {
public:
    TestSteps(CommandFrame& frame, LogMasks& masks) : m_frame(frame), m_masks(masks) {}

    DataLogFileHandler& Log() { return m_frame.Log(); }
    DiagConnection& Connection() { return m_frame.Connection(); }
    const ConnectionAccess& Access() { return m_frame.Access(); }
    CQLibEventListener& Listener() { return Access().Listener(); }

    /// Enter logs an operation's entry line.
    void Enter(const char* sLine) { LogLine(m_frame, LOG_FN, "%s", sLine); }
    /// Report logs "    WHAT = PASS" or "... = FAIL" and returns bResult.
    bool Report(const char* sWhat, bool bResult, LogCategory eCategory = LOG_RET);
    /// Fail logs a line and returns false.
    bool Fail(const char* sLine);

    /// Request calls a method of `requests` with the arguments and a status, and logs
    /// "    REQUEST = PASS, status = 0".
    template <class Requests, class... Parameters, class... Arguments>
    TestResponse Request(const char* sRequest, Requests& requests, bool (Requests::*pMethod)(Parameters...),
                         const Arguments&... arguments) {
        return RequestLoggedAs(LOG_RET, sRequest, requests, pMethod, arguments...);
    }
    /// Accepted is Request, and true when the phone accepted the request.
    template <class Requests, class... Parameters, class... Arguments>
    bool Accepted(const char* sRequest, Requests& requests, bool (Requests::*pMethod)(Parameters...),
                  const Arguments&... arguments) {
        return Request(sRequest, requests, pMethod, arguments...).Accepted();
    }
    template <class Requests, class... Parameters, class... Arguments>
    TestResponse RequestLoggedAs(LogCategory eCategory, const char* sRequest, Requests& requests,
                                 bool (Requests::*pMethod)(Parameters...), const Arguments&... arguments) {
        TestResponse response{};
        response.bExchanged = (requests.*pMethod)(arguments..., response.iStatus);
        LogLine(m_frame, eCategory, "    %s = %s, status = %d", sRequest, Word(response.bExchanged),
                response.iStatus);
        return response;
    }

    /// Wait waits up to QMSL_TimeOut_StatisticsWait until the condition is true. It logs a line before and
    /// after, with the names of the test and the record.
    bool Wait(const char* sTest, const char* sRecord, WaitClock eClock,
              const std::function<bool(const RadioTestBlocks&)>& condition);

    /// SetWaitTime sets the time-out of this and later waits; 0 leaves it unchanged.
    void SetWaitTime(DWORD iWaitTime_ms);
    /// EndSession switches phone logging off and on, logs "LINE = PASS" or "LINE = FAIL", and returns
    /// bOutcome.
    bool EndSession(const char* sLine, bool bOutcome);

private:
    static const char* Word(bool bResult) { return bResult ? "PASS" : "FAIL"; }

    CommandFrame& m_frame;
    LogMasks& m_masks;
};
