// Which radio-test sessions run on a connection.
#pragma once

#include <array>

#include "platform/export.h"

enum class RadioSession : unsigned char { Gsm, Egprs, Wcdma, Hsdpa };

/// RadioSessions is the one record of what the sessions must know of each other: starting one stops another.
/// It is what the library asked for; a phone that was switched off in between knows nothing of it. Caller's
/// thread.
class QUILLET_API RadioSessions {
public:
    /// IsRadioSessionActive: no session is at first.
    bool IsRadioSessionActive(RadioSession eSession) const;

protected:
    /// EndRadioSessionsOfPort forgets GSM and WCDMA, which a newly opened port begins without; the packet
    /// sessions on top of them are forgotten by the operations that end them.
    void EndRadioSessionsOfPort();

private:
    friend class GsmTestSession;
    friend class EgprsTestSession;
    friend class WcdmaTestSession;
    friend class HsdpaTestSession;

    void SetRadioSession(RadioSession eSession, bool bActive);

    std::array<bool, 4> m_aActive{};
};
