// Playing a text log back: what a phone once said, request by request, without the phone.
#pragma once

#include "platform/export.h"

class DiagConnection;

/// LogPlayback reads a text log that this library wrote (the LOG_IO lines of received packets) and puts its
/// packets into the connection's queues, as if they had just been received. While playback is on, requests
/// are answered with the recorded responses, in their order (see DiagConnection::SendSync); messages of the
/// phone land in the phone-log queue, when phone logging is on.
///
/// The port should be closed: what a phone sends meanwhile would mix with the recording. Caller's thread.
class QUILLET_API LogPlayback {
public:
    explicit LogPlayback(DiagConnection& connection) : m_connection(connection) {}
    LogPlayback(const LogPlayback&) = delete;
    LogPlayback& operator=(const LogPlayback&) = delete;

    /// StartLogFilePlaybackMode empties both queues, reads the file and switches playback on.
    ///   sFileName        the log file; lines may end with or without a carriage return
    ///   bKeepLastTwo     0 leaves out the last two bytes of each packet (the FCS of a recorded packet),
    ///                    anything else keeps them
    /// A queue keeps the newest 4096 packets. Lines are passed over without a word when they are no received
    /// packet, are longer than 50 000 characters, hold anything but pairs of hex digits behind their colon,
    /// or a packet of more than 4096 bytes: half a packet is no answer. False, with nothing changed, when
    /// the file cannot be read.
    bool StartLogFilePlaybackMode(const char* sFileName, unsigned char bKeepLastTwo);

    /// StopLogFilePlaybackMode empties both queues and switches playback off; so does OpenPort. Always true.
    bool StopLogFilePlaybackMode();

private:
    DiagConnection& m_connection;
};
