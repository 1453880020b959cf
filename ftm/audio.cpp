#include "ftm/audio.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "ftm/peripheral_command.h"

namespace {

constexpr unsigned short kStatusAnswer = 12; // length of an answer that carries a status alone

} // namespace

bool FtmAudio::SendForPass(const char* sMethod) {
    unsigned short iStatus = 0;
    return SendForStatus(m_frame, sMethod, iStatus);
}

bool FtmAudio::FTM_AUDIO_SET_PATH(unsigned short iAudioDevice) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AUDIO_SET_PATH( iAudioDevice = %d )", iAudioDevice);
    m_frame.FormatAudioFTMHeader(0, 2, kStatusAnswer).U16(iAudioDevice);
    return SendForPass("FTM_AUDIO_SET_PATH");
}

bool FtmAudio::FTM_AUDIO_SET_VOLUME(unsigned char iVolume) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AUDIO_SET_VOLUME( iVolume = %d )", iVolume);
    m_frame.FormatAudioFTMHeader(1, 1, kStatusAnswer).U8(iVolume);
    return SendForPass("FTM_AUDIO_SET_VOLUME");
}

bool FtmAudio::FTM_AUDIO_DSP_LOOPBACK(unsigned char bLoopbackOn) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AUDIO_DSP_LOOPBACK( bLoopbackOn = %d )", bLoopbackOn);
    m_frame.FormatAudioFTMHeader(2, 1, kStatusAnswer).U8(bLoopbackOn);
    return SendForPass("FTM_AUDIO_DSP_LOOPBACK");
}

bool FtmAudio::FTM_AUDIO_PCM_LOOPBACK(unsigned char bLoopbackOn) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AUDIO_PCM_LOOPBACK( bLoopbackOn = %d )", bLoopbackOn);
    m_frame.FormatAudioFTMHeader(3, 1, kStatusAnswer).U8(bLoopbackOn);
    return SendForPass("FTM_AUDIO_PCM_LOOPBACK");
}

bool FtmAudio::FTM_AUDIO_TONES_PLAY(unsigned short iHiFreq, unsigned short iLoFreq, unsigned short iMethod) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AUDIO_TONES_PLAY( iHiFreq = %d, iLoFreq = %d, iMethod = %d )",
                             iHiFreq, iLoFreq, iMethod);
    m_frame.FormatAudioFTMHeader(4, 4, kStatusAnswer).U16(iHiFreq).U16(iLoFreq).U16(iMethod);
    return SendForPass("FTM_AUDIO_TONES_PLAY");
}

bool FtmAudio::FTM_AUDIO_TONES_STOP() {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AUDIO_TONES_STOP( )");
    m_frame.FormatAudioFTMHeader(5, 0, kStatusAnswer);
    return SendForPass("FTM_AUDIO_TONES_STOP");
}

bool FtmAudio::FTM_AUDIO_NS_CONTROL(unsigned char iNoiseSuppressorOn) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AUDIO_NS_CONTROL( iNoiseSuppressorOn = %d )",
                             iNoiseSuppressorOn);
    m_frame.FormatAudioFTMHeader(6, 1, kStatusAnswer).U8(iNoiseSuppressorOn);
    return SendForPass("FTM_AUDIO_NS_CONTROL");
}

bool FtmAudio::FTM_AUDIO_PCM_CAPTURE(unsigned short iNumBuffers, unsigned short iDelay_ms) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AUDIO_PCM_CAPTURE( iNumBuffers = %d, iDelay_ms = %d )",
                             iNumBuffers, iDelay_ms);
    m_frame.FormatAudioFTMHeader(7, 2, kStatusAnswer).U16(iNumBuffers);
    if (!SendForPass("FTM_AUDIO_PCM_CAPTURE"))
        return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(iDelay_ms));
    return true;
}

bool FtmAudio::FTM_AUDIO_PCM_CAPTURE_STOP() {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AUDIO_PCM_CAPTURE_STOP( )");
    m_frame.FormatAudioFTMHeader(9, 0, kStatusAnswer);
    return SendForPass("FTM_AUDIO_PCM_CAPTURE_STOP");
}

bool FtmAudio::FTM_AUDIO_SET_CODECTXGAIN_ADJUST(unsigned short iCodecTxGainAdjust) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_AUDIO_SET_CODECTXGAIN_ADJUST( iCodecTxGainAdjust = %d )",
                             iCodecTxGainAdjust);
    m_frame.FormatAudioFTMHeader(10, 2, kStatusAnswer).U16(iCodecTxGainAdjust);
    return SendForPass("FTM_AUDIO_SET_CODECTXGAIN_ADJUST");
}

bool FtmAudio::FTM_AUDIO_GET_PCM_CAPTURE_DATA(DWORD iDataOffset, unsigned short& iDataSize,
                                              unsigned char* piData) {
    constexpr int kPieceHead = kPeripheralHeader + 6;
    m_frame.Log().LogMessage(LOG_FN,
                             "QLIB_FTM_AUDIO_GET_PCM_CAPTURE_DATA( iDataOffset = %d, iDataSize = %d )",
                             AsInt(iDataOffset), iDataSize);
    m_frame.FormatAudioFTMHeader(8, 6, static_cast<unsigned short>(kPieceHead + iDataSize))
        .U32(iDataOffset)
        .U16(iDataSize);
    return m_frame.Send(0) && TakePiece(m_frame, iDataOffset, iDataSize, piData, 0);
}

bool FtmAudio::ReadCapture(unsigned short iTransferSize, unsigned char* piData, DWORD& iDataSize) {
    const DWORD iRoom = iDataSize;
    iDataSize = 0;
    while (iDataSize < iRoom) {
        const auto iAsked = static_cast<unsigned short>(std::min<DWORD>(iTransferSize, iRoom - iDataSize));
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
    m_frame.Log().LogMessage(LOG_FN,
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
