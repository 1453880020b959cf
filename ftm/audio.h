// The audio path: routing, volume, loopbacks, tones, and a recording of what the microphone brings.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// FtmAudio: every command is one request and its answer, within QMSL_TimeOut_SyncRequest; true means that
/// the handset answered with status 0, which stands in the log too. Values are the handset's and are passed
/// on unchanged. Caller's thread. The frame must outlive it.
class QUILLET_API FtmAudio {
public:
    explicit FtmAudio(CommandFrame& frame) : m_frame(frame) {}

    bool FTM_AUDIO_SET_PATH(unsigned short iAudioDevice);
    bool FTM_AUDIO_SET_VOLUME(unsigned char iVolume);
    /// FTM_AUDIO_DSP_LOOPBACK, FTM_AUDIO_PCM_LOOPBACK lead the microphone to the speaker.
    bool FTM_AUDIO_DSP_LOOPBACK(unsigned char bLoopbackOn);
    bool FTM_AUDIO_PCM_LOOPBACK(unsigned char bLoopbackOn);
    bool FTM_AUDIO_TONES_PLAY(unsigned short iHiFreq, unsigned short iLoFreq, unsigned short iMethod);
    bool FTM_AUDIO_TONES_STOP();
    bool FTM_AUDIO_NS_CONTROL(unsigned char iNoiseSuppressorOn);
    bool FTM_AUDIO_SET_CODECTXGAIN_ADJUST(unsigned short iCodecTxGainAdjust);

    /// FTM_AUDIO_PCM_CAPTURE starts a recording into iNumBuffers of the handset's buffers. When the handset
    /// has taken it, the call goes on for iDelay_ms while it records.
    bool FTM_AUDIO_PCM_CAPTURE(unsigned short iNumBuffers, unsigned short iDelay_ms);
    bool FTM_AUDIO_PCM_CAPTURE_STOP();
    /// FTM_AUDIO_GET_PCM_CAPTURE_DATA reads a piece of the recording. Its answer carries the offset and the
    /// size again, then the data, and no status: true when they fit what was asked for.
    ///   iDataSize  in: how much to read and the room in piData; out: how much came, less at the end
    bool FTM_AUDIO_GET_PCM_CAPTURE_DATA(DWORD iDataOffset, unsigned short& iDataSize, unsigned char* piData);
    /// FTM_AUDIO_CapturePCMandTransferData records, reads the recording in pieces of iTransferSize (at most
    /// what fits into an answer, 4078 bytes) until a piece is not full, and stops the recording, also when a
    /// piece fails.
    ///   iDataSize  in: the room in piData; a longer recording is read that far; out: how much was read
    /// True when all three parts worked.
    bool FTM_AUDIO_CapturePCMandTransferData(unsigned short iNumBuffers, unsigned short iDelay_ms,
                                             unsigned short iTransferSize, unsigned char* piData,
                                             DWORD& iDataSize);

private:
    bool ReadCapture(unsigned short iTransferSize, unsigned char* piData, DWORD& iDataSize);

    CommandFrame& m_frame;
};
