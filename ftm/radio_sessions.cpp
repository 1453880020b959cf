#include "ftm/radio_sessions.h"

bool RadioSessions::IsRadioSessionActive(RadioSession eSession) const {
    return m_aActive[static_cast<size_t>(eSession)];
}

void RadioSessions::SetRadioSession(RadioSession eSession, bool bActive) {
    m_aActive[static_cast<size_t>(eSession)] = bActive;
}

void RadioSessions::EndRadioSessionsOfPort() {
    SetRadioSession(RadioSession::Gsm, false);
    SetRadioSession(RadioSession::Wcdma, false);
}
