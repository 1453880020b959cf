#include "ftm/audio.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "ftm/ftm_command.h"
#include "ftm/peripheral_command.h"

namespace {

/// The command ids.
enum AudioCommand : unsigned short {
    AUDIO_SET_PATH = 0,
    AUDIO_SET_VOLUME = 1,
    AUDIO_DSP_LOOPBACK = 2,
    AUDIO_PCM_LOOPBACK = 3,
    AUDIO_TONES_PLAY = 4, // its request length leaves out the method
    AUDIO_TONES_STOP = 5,
    AUDIO_NS_CONTROL = 6,
    AUDIO_PCM_CAPTURE = 7,
    AUDIO_GET_PCM_CAPTURE_DATA = 8,
    AUDIO_PCM_CAPTURE_STOP = 9,
    AUDIO_SET_CODECTXGAIN_ADJUST = 10,
};

constexpr int kPieceHead = kPeripheralHeader + 6; // of a response with a piece of the recording

/// Send exchanges a command whose entry line shows all its fields, for a status. iFieldBytes: the request
/// length in its header, which counts the fields alone.
template <class... Fields>
bool Send(CommandFrame& frame, AudioCommand eCommand, unsigned short iFieldBytes, TextFor<Fields...> entry,
          Fields... fields) {
    unsigned short iStatus = 0;
    return SendSetting(frame, frame.FormatAudioFTMHeader(eCommand, iFieldBytes, kStatusResponse), iStatus,
                       entry, fields...);
}

} // namespace

bool FtmAudio::FTM_AUDIO_SET_PATH(unsigned short iAudioDevice) {
    return Send(m_frame, AUDIO_SET_PATH, sizeof iAudioDevice, "QLIB_FTM_AUDIO_SET_PATH( iAudioDevice = %d )",
                iAudioDevice);
}

bool FtmAudio::FTM_AUDIO_SET_VOLUME(unsigned char iVolume) {
    return Send(m_frame, AUDIO_SET_VOLUME, sizeof iVolume, "QLIB_FTM_AUDIO_SET_VOLUME( iVolume = %d )",
                iVolume);
}

bool FtmAudio::FTM_AUDIO_DSP_LOOPBACK(unsigned char bLoopbackOn) {
    return Send(m_frame, AUDIO_DSP_LOOPBACK, sizeof bLoopbackOn,
                "QLIB_FTM_AUDIO_DSP_LOOPBACK( bLoopbackOn = %d )", bLoopbackOn);
}

bool FtmAudio::FTM_AUDIO_PCM_LOOPBACK(unsigned char bLoopbackOn) {
    return Send(m_frame, AUDIO_PCM_LOOPBACK, sizeof bLoopbackOn,
                "QLIB_FTM_AUDIO_PCM_LOOPBACK( bLoopbackOn = %d )", bLoopbackOn);
}

bool FtmAudio::FTM_AUDIO_TONES_PLAY(unsigned short iHiFreq, unsigned short iLoFreq, unsigned short iMethod) {
    return Send(m_frame, AUDIO_TONES_PLAY, sizeof iHiFreq + sizeof iLoFreq,
                "QLIB_FTM_AUDIO_TONES_PLAY( iHiFreq = %d, iLoFreq = %d, iMethod = %d )", iHiFreq, iLoFreq,
                iMethod);
}

bool FtmAudio::FTM_AUDIO_TONES_STOP() {
    return Send(m_frame, AUDIO_TONES_STOP, 0, "QLIB_FTM_AUDIO_TONES_STOP( )");
}

bool FtmAudio::FTM_AUDIO_NS_CONTROL(unsigned char iNoiseSuppressorOn) {
    return Send(m_frame, AUDIO_NS_CONTROL, sizeof iNoiseSuppressorOn,
                "QLIB_FTM_AUDIO_NS_CONTROL( iNoiseSuppressorOn = %d )", iNoiseSuppressorOn);
}

bool FtmAudio::FTM_AUDIO_PCM_CAPTURE(unsigned short iNumBuffers, unsigned short iDelay_ms) {
    static constexpr char sLine[] = "QLIB_FTM_AUDIO_PCM_CAPTURE( iNumBuffers = %d, iDelay_ms = %d )";
    LogLine(m_frame, LOG_FN, sLine, iNumBuffers, iDelay_ms);
    m_frame.FormatAudioFTMHeader(AUDIO_PCM_CAPTURE, sizeof iNumBuffers, kStatusResponse).U16(iNumBuffers);
    unsigned short iStatus = 0;
    if (!SendForStatus(m_frame, sLine, iStatus))
        return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(iDelay_ms));
    return true;
}

bool FtmAudio::FTM_AUDIO_PCM_CAPTURE_STOP() {
    return Send(m_frame, AUDIO_PCM_CAPTURE_STOP, 0, "QLIB_FTM_AUDIO_PCM_CAPTURE_STOP( )");
}

bool FtmAudio::FTM_AUDIO_SET_CODECTXGAIN_ADJUST(unsigned short iCodecTxGainAdjust) {
    return Send(m_frame, AUDIO_SET_CODECTXGAIN_ADJUST, sizeof iCodecTxGainAdjust,
                "QLIB_FTM_AUDIO_SET_CODECTXGAIN_ADJUST( iCodecTxGainAdjust = %d )", iCodecTxGainAdjust);
}

bool FtmAudio::FTM_AUDIO_GET_PCM_CAPTURE_DATA(DWORD iDataOffset, unsigned short& iDataSize,
                                              unsigned char* piData) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_AUDIO_GET_PCM_CAPTURE_DATA( iDataOffset = %d, iDataSize = %d )",
            iDataOffset, iDataSize);
    m_frame
        .FormatAudioFTMHeader(AUDIO_GET_PCM_CAPTURE_DATA, sizeof iDataOffset + sizeof iDataSize,
                              static_cast<unsigned short>(kPieceHead + iDataSize))
        .U32(iDataOffset)
        .U16(iDataSize);
    return m_frame.Send(0) && TakePiece(m_frame, iDataOffset, iDataSize, piData, 0);
}

bool FtmAudio::ReadCapture(unsigned short iTransferSize, unsigned char* piData, DWORD& iDataSize) {
    const DWORD iPieceSize = std::min<unsigned short>(iTransferSize, kLongestResponse - kPieceHead);
    const DWORD iRoom = iDataSize;
    iDataSize = 0;
    while (iDataSize < iRoom) {
        const auto iAsked = static_cast<unsigned short>(std::min(iPieceSize, iRoom - iDataSize));
        unsigned short iPiece = iAsked;
        if (!FTM_AUDIO_GET_PCM_CAPTURE_DATA(iDataSize, iPiece, piData + iDataSize))
            return false;
        iDataSize += iPiece;
        if (iPiece < iAsked)
            break;
    }
    return true;
}

bool FtmAudio::FTM_AUDIO_CapturePCMandTransferData(unsigned short iNumBuffers, unsigned short iDelay_ms,
                                                   unsigned short iTransferSize, unsigned char* piData,
                                                   DWORD& iDataSize) {
    LogLine(m_frame, LOG_FN,
            "QLIB_FTM_AUDIO_CapturePCMandTransferData( iNumBuffers = %d, iDelay_ms = %d, "
            "iTransferSize = %d )",
            iNumBuffers, iDelay_ms, iTransferSize);
    if (iTransferSize == 0 || !FTM_AUDIO_PCM_CAPTURE(iNumBuffers, iDelay_ms)) {
        iDataSize = 0;
        return false;
    }
    const bool bRead = ReadCapture(iTransferSize, piData, iDataSize);
    return FTM_AUDIO_PCM_CAPTURE_STOP() && bRead;
}
