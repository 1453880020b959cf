// Playback of a text log: the recorded responses of a phone, without the phone.
#pragma once

#include "platform/export.h"

class DiagConnection;

/// LogPlayback reads a text log of this library (its LOG_IO lines of received packets) and puts the packets
/// into the connection's queues as if they had just been received. While playback is on, requests receive the
/// recorded responses in their order (see DiagConnection::SendSync). Unsolicited packets go to the phone-log
/// queue when phone logging is on.
///
/// The port should be closed, or packets from a phone would mix with the recording. Caller's thread.
class QUILLET_API LogPlayback {
public:
    explicit LogPlayback(DiagConnection& connection) : m_connection(connection) {}
    LogPlayback(const LogPlayback&) = delete;
    LogPlayback& operator=(const LogPlayback&) = delete;

    /// StartLogFilePlaybackMode empties both queues, reads the file and turns playback on.
    ///   sFileName        the log file; lines may end with or without a carriage return
    ///   bKeepLastTwo     0 removes the last two bytes of each packet (the FCS of a recorded packet), any
    ///                    other value keeps them
    /// A queue keeps the newest 4096 packets. Lines are skipped silently when they do not record a received
    /// packet, exceed 50 000 characters, have anything but pairs of hex digits after the colon, or hold more
    /// than 4096 bytes. False, with nothing changed, when the file cannot be read.
    bool StartLogFilePlaybackMode(const char* sFileName, unsigned char bKeepLastTwo);

    /// StopLogFilePlaybackMode empties both queues and turns playback off, as OpenPort does. Always true.
    bool StopLogFilePlaybackMode();

private:
    DiagConnection& m_connection;
};
