#include "link/frame_decoder.h"

#include <algorithm>
#include <string_view>

#include "link/crc16.h"
#include "link/event_dispatcher.h"
#include "link/frame.h"
#include "link/packet_codes.h"
#include "link/text_log.h"

void FrameDecoder::Decode(std::span<const unsigned char> bytes, ReceiveMode eMode) {
    switch (eMode) {
        case ReceiveMode::Framed:
            DecodeFramed(bytes);
            break;
        case ReceiveMode::RawReply:
            DecodeRawReply(bytes);
            break;
        case ReceiveMode::Raw:
            for (const unsigned char iByte : bytes)
                Append(iByte);
            if (m_iCount > 0)
                Deliver(nullptr);
            break;
    }
}

void FrameDecoder::DecodeFramed(std::span<const unsigned char> bytes) {
    while (!bytes.empty()) {
        const size_t iRun = UnescapedRun(bytes);
        AppendRun(bytes.first(iRun));
        if (iRun == bytes.size())
            return;
        // An escape just before a flag stays pending and applies to the next data byte.
        if (bytes[iRun] == kFrameEscape)
            m_bEscapePending = true;
        else if (m_iCount > 0)
            EndOfFrame();
        bytes = bytes.subspan(iRun + 1);
    }
}

void FrameDecoder::AppendRun(std::span<const unsigned char> run) {
    if (m_bEscapePending && !run.empty()) {
        m_bEscapePending = false;
        Append(run.front() ^ kFrameEscapeXor);
        run = run.subspan(1);
    }
    while (!run.empty()) {
        const size_t iFit = std::min(run.size(), m_aAccumulator.size() - m_iCount);
        std::copy_n(run.begin(), iFit, m_aAccumulator.data() + m_iCount);
        m_iCount += iFit;
        run = run.subspan(iFit);
        if (run.empty())
            return;
        Append(run.front());
        run = run.subspan(1);
    }
}

void FrameDecoder::EndOfFrame() {
    if (IsUnsolicitedCode(m_aAccumulator[0])) {
        Deliver(nullptr);
    } else if (ComputeCrc16(m_aAccumulator.data(), static_cast<unsigned short>(m_iCount * 8)) ==
               CRC16_GOOD_RESIDUE) {
        Deliver("SYNC REC");
    } else {
        m_log.LogHex(LOG_IO, m_aAccumulator.data(), static_cast<int>(m_iCount),
                     "ERROR SYNC REC (%d bytes): ", static_cast<int>(m_iCount));
        Reset();
    }
}

void FrameDecoder::DecodeRawReply(std::span<const unsigned char> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    bool bTerminatorSeen = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool bMayEnd = text[i] == 'K' || text[i] == 'R';
        if (bTerminatorSeen && !bMayEnd)
            continue;
        Append(bytes[i]);
        const std::string_view seen = text.substr(0, i + 1);
        if (seen.ends_with("OK") || seen.ends_with("ERROR")) {
            if (m_iCount > 0)
                Deliver("RAW REC");
            bTerminatorSeen = true;
        }
    }
}

void FrameDecoder::Append(unsigned char iByte) {
    if (m_iCount < m_aAccumulator.size()) {
        m_aAccumulator[m_iCount++] = iByte;
        return;
    }
    m_log.LogMessage(LOG_IO, "ERROR THREAD READ---NON-HDLC data (%d bytes)", static_cast<int>(m_iCount));
    Deliver(nullptr);
}

void FrameDecoder::Deliver(const char* sLogPrefix) {
    if (sLogPrefix != nullptr)
        m_log.LogHex(LOG_IO, m_aAccumulator.data(), static_cast<int>(m_iCount), "%s (%d bytes): ", sLogPrefix,
                     static_cast<int>(m_iCount));
    m_dispatcher.HandOver({m_aAccumulator.data(), m_iCount});
    Reset();
}
