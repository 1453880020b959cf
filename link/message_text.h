// Unsolicited packets as text, for the text log and for standard output.
#pragma once

#include <span>

#include "link/extended_message.h"
#include "platform/export.h"

class DiagConnection;

/// MessageText converts the packets that the phone sends unasked (log records, debug messages, event reports)
/// to readable text. It goes to the text log under the caller's category and, on request, to standard output.
/// Fields missing from a short packet are shown as 0 or as an empty text.
///
/// Caller's thread; packets may be added to the phone-log queue at the same time.
class QUILLET_API MessageText {
public:
    explicit MessageText(DiagConnection& connection) : m_connection(connection) {}
    MessageText(const MessageText&) = delete;
    MessageText& operator=(const MessageText&) = delete;

    /// AddUserAsyncLogMessageToTextLog describes one packet, of unknown kinds too. Always true. The length of
    /// the packet is unknown here, so it must lie in a buffer of at least 4096 readable bytes (as the items
    /// of the queues do) or be complete: 20 bytes of a log record, 79 of a debug message, an extended debug
    /// message as for ParseExtendedMessage.
    bool AddUserAsyncLogMessageToTextLog(unsigned int iCategory, unsigned char* pPacket, bool bToTextLog,
                                         bool bToStdout);

    /// DumpAsyncMessageToTextLog removes every packet from the phone-log queue and describes it; with bRaw,
    /// after its bytes in hex. Always false, even on success.
    bool DumpAsyncMessageToTextLog(unsigned int iCategory, bool bToStdout, bool bToTextLog, bool bRaw);

    /// DIAG_ParseExtendedMessage decodes an extended debug message; the packet is as for
    /// ParseExtendedMessage. False, with *pMessage unchanged, for any other packet and for null.
    bool DIAG_ParseExtendedMessage(unsigned char* pPacket, ExtendedMessage* pMessage);

private:
    DiagConnection& m_connection;
};
