// The greeting of the phone's download mode.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// DownloadGreeting addresses a phone in download mode, which does not answer diagnostic requests. Each
/// request waits up to QMSL_TimeOut_SyncRequest. Caller's thread. The frame must outlive it.
class QUILLET_API DownloadGreeting {
public:
    explicit DownloadGreeting(CommandFrame& frame) : m_frame(frame) {}

    /// DOWNLOAD_Hello greets the phone with the host's protocol version, the oldest version that it supports,
    /// and its feature bits, then sends an empty request. True when the phone answered the greeting.
    /// piResponse (null, or at least 4096 bytes) then receives the response to the empty request, if there
    /// was one.
    bool DOWNLOAD_Hello(unsigned char iVersionNumber, unsigned char iCompatibleVersion,
                        unsigned char iFeatureBits, unsigned char* piResponse);
    /// DOWNLOAD_Ping: true when a phone in download mode answers.
    bool DOWNLOAD_Ping();

private:
    CommandFrame& m_frame;
};
