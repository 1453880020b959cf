#include "ftm/test_steps.h"

#include "link/clock.h"
#include "link/radio_test_status.h"

bool TestSteps::Report(const char* sWhat, bool bResult, LogCategory eCategory) {
    LogLine(m_frame, eCategory, "    %s = %s", sWhat, Word(bResult));
    return bResult;
}

bool TestSteps::Fail(const char* sLine) {
    LogLine(m_frame, LOG_RET, "%s", sLine);
    return false;
}

bool TestSteps::Wait(const char* sTest, const char* sRecord, WaitClock eClock,
                     const std::function<bool(const RadioTestBlocks&)>& condition) {
    const auto begin = Clock::now();
    if (eClock == WaitClock::Timer)
        Connection().StartTimer();
    LogLine(m_frame, LOG_RET, " Starting wait for %s BER message %s...", sTest, sRecord);
    const DWORD iLimit_ms = Access().TimeOut_ms(QMSL_TimeOut_StatisticsWait);
    const bool bLooks = iLimit_ms != 0 || eClock == WaitClock::Timer;
    const bool bDone =
        bLooks && Listener().RadioTests().WaitUntil(begin + Milliseconds(iLimit_ms), condition);
    const auto taken = std::chrono::duration_cast<Milliseconds>(Clock::now() - begin).count();
    LogLine(m_frame, LOG_RET, " Wait for %s BER message %s took %d ms, status = %d", sTest, sRecord,
            static_cast<int>(taken), bDone ? 1 : 0);
    return bDone;
}

void TestSteps::SetWaitTime(DWORD iWaitTime_ms) {
    if (iWaitTime_ms != 0)
        Access().StoreTimeOut(QMSL_TimeOut_StatisticsWait, iWaitTime_ms);
}

bool TestSteps::EndSession(const char* sLine, bool bOutcome) {
    m_masks.DIAG_SetPhoneLoggingState(false);
    m_masks.DIAG_SetPhoneLoggingState(true);
    LogLine(m_frame, LOG_RET, "%s = %s", sLine, Word(bOutcome));
    return bOutcome;
}
