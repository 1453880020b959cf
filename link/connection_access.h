// What the library's own code may do with a connection, beyond what programs may.
#pragma once

#include <span>

#include "link/connection_state.h"
#include "link/diag_connection.h"

/// ConnectionAccess is how the command families, playback and the message texts reach the parts of a
/// connection. Programs get the connection alone: this header is not among the public ones. Caller's thread.
class ConnectionAccess {
public:
    explicit ConnectionAccess(DiagConnection& connection)
        : m_connection(connection), m_state(*connection.m_pState) {}

    /// PhoneLogQueue holds what the phone sent unasked while phone logging was on.
    CQLibMessageQueue& PhoneLogQueue() const { return m_state.asyncQueue; }
    /// CommandResponseQueue holds every other packet since the last request.
    CQLibMessageQueue& CommandResponseQueue() const { return m_state.syncQueue; }
    /// DelayedResponseQueue holds the delayed responses that the last command which waits for them accepted.
    CQLibMessageQueue& DelayedResponseQueue() const { return m_state.delayedQueue; }
    /// SetPhoneLogging keeps (true) or drops (false, at first) what the phone sends unasked.
    void SetPhoneLogging(bool bEnabled) const { m_state.listener.SetLoggingEnabled(bEnabled); }
    /// Listener has the status of the radio tests.
    CQLibEventListener& Listener() const { return m_state.listener; }
    DataLogFileHandler& Log() const { return m_state.textLog; }

    /// TimeOut_ms is GetTimeOut without its log lines, StoreTimeOut is ConfigureTimeOut without its own; the
    /// id is a valid one.
    DWORD TimeOut_ms(QMSL_TimeOutType_Enum eTimeOutId) const { return m_state.aTimeOuts[eTimeOutId]; }
    void StoreTimeOut(QMSL_TimeOutType_Enum eTimeOutId, DWORD iNewValue_ms) const {
        m_state.aTimeOuts[eTimeOutId] = iNewValue_ms;
    }

    /// SendSyncExpecting is SendSync for a request whose response begins with another byte than the request:
    /// it waits for iExpectedCommand, over a serial line too.
    bool SendSyncExpecting(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                           unsigned short* piResponseSize, unsigned char* piResponseBytes,
                           unsigned char iExpectedCommand, DWORD iTimeout, DWORD iReadDelay_ms) const {
        return m_connection.Exchange(
            {{piRequestBytes, iRequestSize}, iExpectedCommand, false, iTimeout, iReadDelay_ms},
            piResponseSize, piResponseBytes);
    }

    /// ReplayPacket hands over a recorded packet as if it had just been received.
    void ReplayPacket(std::span<unsigned char> packet) const { m_state.listener.ReceivePacket(packet); }
    /// SetPlaybackMode has SendSync take responses from the command-response queue (true) or from the phone
    /// (false, at first and after OpenPort).
    void SetPlaybackMode(bool bPlayback) const { m_state.bPlaybackMode = bPlayback; }

private:
    DiagConnection& m_connection;
    ConnectionState& m_state;
};
