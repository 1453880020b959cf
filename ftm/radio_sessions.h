// Which radio-test sessions are active on a connection.
#pragma once

#include <array>

#include "platform/export.h"

/// The kinds of radio-test sessions.
enum class RadioSession : unsigned char { Gsm, Egprs, Wcdma, Hsdpa };

/// RadioSessions records which sessions are active, because starting one stops others. It reflects the
/// library's requests: a phone that was switched off in between has no session. Caller's thread.
class QUILLET_API RadioSessions {
public:
    /// IsRadioSessionActive: initially false for every session.
    bool IsRadioSessionActive(RadioSession eSession) const;

protected:
    /// EndRadioSessionsOfPort marks GSM and WCDMA as ended, for a newly opened port. The packet sessions that
    /// use them are ended by their own operations.
    void EndRadioSessionsOfPort();

private:
    friend class GsmTestSession;
    friend class EgprsTestSession;
    friend class WcdmaTestSession;
    friend class HsdpaTestSession;

    void SetRadioSession(RadioSession eSession, bool bActive);

    std::array<bool, 4> m_aActive{};
};
