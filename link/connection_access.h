// What the library's own code, but no program, may do with a connection.
#pragma once

#include <span>

#include "link/connection_state.h"
#include "link/diag_connection.h"

/// ConnectionAccess lets the command families, playback and the message texts reach the parts of a
/// connection. Programs cannot: this header is not public. Called on the caller's thread.
class ConnectionAccess {
public:
    explicit ConnectionAccess(DiagConnection& connection)
        : m_connection(connection), m_state(*connection.m_pState) {}

    /// PhoneLogQueue holds the unsolicited packets that arrived while phone logging was on.
    CQLibMessageQueue& PhoneLogQueue() const { return m_state.asyncQueue; }
    /// CommandResponseQueue holds every other packet since the last request.
    CQLibMessageQueue& CommandResponseQueue() const { return m_state.syncQueue; }
    /// DelayedResponseQueue holds the delayed responses that the last command to wait for them accepted.
    CQLibMessageQueue& DelayedResponseQueue() const { return m_state.delayedQueue; }
    /// SetPhoneLogging keeps (true) or drops (false, the default) unsolicited packets.
    void SetPhoneLogging(bool bEnabled) const { m_state.listener.SetLoggingEnabled(bEnabled); }
    /// Listener holds the status of the radio tests.
    CQLibEventListener& Listener() const { return m_state.listener; }
    DataLogFileHandler& Log() const { return m_state.textLog; }

    /// TimeOut_ms is GetTimeOut without the log lines, StoreTimeOut is ConfigureTimeOut without them. The id
    /// must be valid.
    DWORD TimeOut_ms(QMSL_TimeOutType_Enum eTimeOutId) const { return m_state.aTimeOuts[eTimeOutId]; }
    void StoreTimeOut(QMSL_TimeOutType_Enum eTimeOutId, DWORD iNewValue_ms) const {
        m_state.aTimeOuts[eTimeOutId] = iNewValue_ms;
    }

    /// SendSyncExpecting is SendSync for a request whose response begins with a different byte: it waits for
    /// iExpectedCommand, over a serial line too.
    bool SendSyncExpecting(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                           unsigned short* piResponseSize, unsigned char* piResponseBytes,
                           unsigned char iExpectedCommand, DWORD iTimeout, DWORD iReadDelay_ms) const {
        return m_connection.Exchange(
            {{piRequestBytes, iRequestSize}, iExpectedCommand, false, iTimeout, iReadDelay_ms},
            piResponseSize, piResponseBytes);
    }

    /// ReplayPacket processes a recorded packet as if it had just been received.
    void ReplayPacket(std::span<unsigned char> packet) const { m_state.listener.ReceivePacket(packet); }
    /// SetPlaybackMode makes SendSync take responses from the command-response queue (true) or from the phone
    /// (false: initially, and after OpenPort).
    void SetPlaybackMode(bool bPlayback) const { m_state.bPlaybackMode = bPlayback; }

private:
    DiagConnection& m_connection;
    ConnectionState& m_state;
};
