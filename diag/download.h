// The greeting of the phone's download mode.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// DownloadGreeting talks to a phone in download mode, which answers no diagnostic requests. Two requests,
/// each within QMSL_TimeOut_SyncRequest. Caller's thread. The frame must outlive it.
class QUILLET_API DownloadGreeting {
public:
    explicit DownloadGreeting(CommandFrame& frame) : m_frame(frame) {}

    /// DOWNLOAD_Hello greets the phone with the host's protocol version, the oldest version that it
    /// understands and its feature bits, then sends an empty request. True when the greeting was answered;
    /// then piResponse (null, or at least 4096 bytes) receives the answer to the empty request, if there was
    /// one.
    bool DOWNLOAD_Hello(unsigned char iVersionNumber, unsigned char iCompatibleVersion,
                        unsigned char iFeatureBits, unsigned char* piResponse);
    /// DOWNLOAD_Ping tells whether a phone in download mode answers.
    bool DOWNLOAD_Ping();

private:
    CommandFrame& m_frame;
};
