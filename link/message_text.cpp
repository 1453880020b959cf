#include "link/message_text.h"

#include <cstdarg>
#include <cstdio>

#include "link/as_int.h"
#include "link/connection_access.h"
#include "link/crc16.h"
#include "link/extended_message_text.h"
#include "link/log_codes.h"
#include "link/packet_codes.h"
#include "link/packet_view.h"

namespace {

/// Where the text of one packet goes. Each call writes one message of the log or one piece of standard
/// output.
class TextSink {
public:
    TextSink(DataLogFileHandler& log, unsigned int iCategory, bool bToTextLog, bool bToStdout)
        : m_log(log), m_iCategory(iCategory), m_bToTextLog(bToTextLog), m_bToStdout(bToStdout) {}

    void Log(const char* sText) {
        if (m_bToTextLog)
            m_log.LogMessage(m_iCategory, "%s", sText);
    }
    void Print(const char* sText) {
        if (m_bToStdout)
            std::fputs(sText, stdout);
    }
    void Both(const char* sText) {
        Print(sText);
        Log(sText);
    }
    /// The same text, on a new line of standard output.
    void BothOnNewLine(const char* sText) {
        Print("\n");
        Both(sText);
    }
    void Format(const char* sFormat, ...) QUILLET_PRINTF(2, 3) {
        char sText[200];
        va_list arguments;
        va_start(arguments, sFormat);
        std::vsnprintf(sText, sizeof sText, sFormat, arguments);
        va_end(arguments);
        Both(sText);
    }
    void Bytes(std::span<const unsigned char> bytes) {
        const auto iSize = static_cast<int>(bytes.size());
        if (m_bToTextLog)
            m_log.LogHex(m_iCategory, bytes.data(), iSize, "ASYNC Raw DATA: ");
        if (!m_bToStdout)
            return;
        char sHex[DataLogFileHandler::kHexTextSize];
        DataLogFileHandler::FormatHexBytes(sHex, bytes.data(), iSize);
        Print("ASYNC Raw DATA: ");
        Print(sHex);
    }

private:
    DataLogFileHandler& m_log;
    const unsigned int m_iCategory;
    const bool m_bToTextLog;
    const bool m_bToStdout;
};

/// Prints which kind of factory-test record it is, to standard output only.
void PrintFtmKind(const PacketView& record, TextSink& sink) {
    constexpr size_t kGsmTestOffset = 18;
    sink.Print("\nFTM Log Code 2 found");
    switch (record.U16(kFtmLogTypeOffset)) {
        case kPrintfLogType:
            return sink.Print("\nLOG_FTM2_LOG_PRINTF");
        case kOldBluetoothLogType:
            return sink.Print("\nLOG_FTM2_LOG_BT");
        case kAgcLogType:
            return sink.Print("\nLOG_FTM2_LOG_WCDMA_AGC");
        case kGsmLogType: {
            char sText[40];
            std::snprintf(sText, sizeof sText, "\nLOG_FTM2_LOG_GSM_BER: %d", record.U8(kGsmTestOffset));
            return sink.Print(sText);
        }
        case kWcdmaLogType:
            return sink.Print("\nLOG_FTM2_LOG_WCDMA_BER");
        default:
            return sink.Print("\n Type not known");
    }
}

void DescribeLogRecord(const PacketView& record, TextSink& sink) {
    const unsigned iLogCode = record.U16(kRecordLogCodeOffset);
    char sText[80];
    std::snprintf(sText, sizeof sText, "Log Message 0x%X detected, length %d bytes\n\n", iLogCode,
                  record.U16(kRecordLengthOffset));
    sink.BothOnNewLine(sText);
    if (iLogCode == kFtmLogCode)
        PrintFtmKind(record, sink);
}

void DescribeDebugMessage(const PacketView& message, TextSink& sink) {
    constexpr size_t kFileNameSize = 13;
    constexpr size_t kFormatSize = 40;
    const auto file = message.Text(12, kFileNameSize);
    const auto format = message.Text(27, kFormatSize);
    sink.Both("\nStreaming Message detected");
    sink.Format("\nQUANTITY: %d", message.U16(1));
    sink.Format("\nDROP_CNT: 0x%X", AsInt(message.U32(3)));
    sink.Format("\nMESSAGE_LEVEL: 0x%X", message.U8(11));
    sink.Format("\nFILE_NAME: %.*s", static_cast<int>(file.size()), file.data());
    sink.Format("\nLINE_NUMBER: %d", message.U16(25));
    sink.Format("\nFMT_STRING: %.*s", static_cast<int>(format.size()), format.data());
    sink.Format("\nCODE1: %d", AsInt(message.U32(67)));
    sink.Format("\nCODE2: %d", AsInt(message.U32(71)));
    sink.Format("\nCODE3: %d", AsInt(message.U32(75)));
    sink.Both("\n\n");
}

/// Describes a packet without its FCS that is not an extended debug message.
void DescribeFixed(const PacketView& packet, TextSink& sink) {
    switch (packet.U8(0)) {
        case kLogRecord:
            return DescribeLogRecord(packet, sink);
        case kDebugMessage:
            return DescribeDebugMessage(packet, sink);
        case kEventReport:
            sink.Print("\nEvent detected");
            return sink.Log("\nEvent Detected.");
        default:
            sink.Print("\nWarning: Unknown type");
            return sink.Log("\nWarning: Unknown Type");
    }
}

void Describe(const ExtendedMessage& message, TextSink& sink) {
    char sText[kExtendedMessageTextSize];
    DescribeExtendedMessage(message, sText);
    sink.BothOnNewLine(sText);
}

} // namespace

bool MessageText::AddUserAsyncLogMessageToTextLog(unsigned int iCategory, unsigned char* pPacket,
                                                  bool bToTextLog, bool bToStdout) {
    TextSink sink(*m_connection.GetDataLogFileHandler(), iCategory, bToTextLog, bToStdout);
    ExtendedMessage message;
    if (DIAG_ParseExtendedMessage(pPacket, &message))
        Describe(message, sink);
    else if (pPacket != nullptr)
        DescribeFixed(PacketView({pPacket, kMaxPacketSize}), sink);
    return true;
}

bool MessageText::DumpAsyncMessageToTextLog(unsigned int iCategory, bool bToStdout, bool bToTextLog,
                                            bool bRaw) {
    TextSink sink(*m_connection.GetDataLogFileHandler(), iCategory, bToTextLog, bToStdout);
    QueueItem item;
    while (ConnectionAccess(m_connection).PhoneLogQueue().Pop(&item)) {
        const std::span<const unsigned char> packet(item.data, item.length);
        if (packet.empty())
            continue;
        if (bRaw)
            sink.Bytes(packet);
        ExtendedMessage message;
        if (ParseExtendedMessage(packet, message))
            Describe(message, sink);
        else
            DescribeFixed(PacketView(WithoutFcs(packet)), sink);
    }
    return false;
}

bool MessageText::DIAG_ParseExtendedMessage(unsigned char* pPacket, ExtendedMessage* pMessage) {
    return pPacket != nullptr && pMessage != nullptr && ParseExtendedMessage(pPacket, *pMessage);
}
