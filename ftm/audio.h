// The audio path: its settings, and recordings from the microphone.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// FtmAudio: every command is one request and its response, within QMSL_TimeOut_SyncRequest. True means that
/// the phone answered with status 0, which is also logged. Values are phone-specific and passed on unchanged.
/// Caller's thread. The frame must outlive it.
class QUILLET_API FtmAudio {
public:
    explicit FtmAudio(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_AUDIO_SET_PATH routes the sound to a device.
    bool FTM_AUDIO_SET_PATH(unsigned short iAudioDevice);
    /// FTM_AUDIO_SET_VOLUME sets the volume of the present path.
    bool FTM_AUDIO_SET_VOLUME(unsigned char iVolume);
    /// FTM_AUDIO_DSP_LOOPBACK, FTM_AUDIO_PCM_LOOPBACK connect the microphone to the speaker.
    bool FTM_AUDIO_DSP_LOOPBACK(unsigned char bLoopbackOn);
    bool FTM_AUDIO_PCM_LOOPBACK(unsigned char bLoopbackOn);
    /// FTM_AUDIO_TONES_PLAY plays a tone of two frequencies until FTM_AUDIO_TONES_STOP.
    bool FTM_AUDIO_TONES_PLAY(unsigned short iHiFreq, unsigned short iLoFreq, unsigned short iMethod);
    bool FTM_AUDIO_TONES_STOP();
    /// FTM_AUDIO_NS_CONTROL switches the noise suppressor on (1) or off (0).
    bool FTM_AUDIO_NS_CONTROL(unsigned char iNoiseSuppressorOn);
    /// FTM_AUDIO_SET_CODECTXGAIN_ADJUST adjusts the gain of the microphone path.
    bool FTM_AUDIO_SET_CODECTXGAIN_ADJUST(unsigned short iCodecTxGainAdjust);

    /// FTM_AUDIO_PCM_CAPTURE starts a recording into iNumBuffers of the phone's buffers. When the phone
    /// accepts it, the call waits for iDelay_ms while the phone records.
    bool FTM_AUDIO_PCM_CAPTURE(unsigned short iNumBuffers, unsigned short iDelay_ms);
    /// FTM_AUDIO_PCM_CAPTURE_STOP ends the recording.
    bool FTM_AUDIO_PCM_CAPTURE_STOP();
    /// FTM_AUDIO_GET_PCM_CAPTURE_DATA reads a piece of the recording. The response repeats the offset and has
    /// the size, then the data, and no status. True when they match the request.
    ///   iDataSize  in: how much to read, and the room in piData; out: how much was read, less at the end
    bool FTM_AUDIO_GET_PCM_CAPTURE_DATA(DWORD iDataOffset, unsigned short& iDataSize, unsigned char* piData);
    /// FTM_AUDIO_CapturePCMandTransferData records, reads the recording in pieces of iTransferSize (at most
    /// 4078 bytes, what a response can carry) until a piece is not full, and stops the recording, also when a
    /// piece fails.
    ///   iDataSize  in: the room in piData (a longer recording is read only that far); out: how much was read
    ///
    /// True when all three steps succeeded.
    bool FTM_AUDIO_CapturePCMandTransferData(unsigned short iNumBuffers, unsigned short iDelay_ms,
                                             unsigned short iTransferSize, unsigned char* piData,
                                             DWORD& iDataSize);

private:
    bool ReadCapture(unsigned short iTransferSize, unsigned char* piData, DWORD& iDataSize);

    CommandFrame& m_frame;
};
