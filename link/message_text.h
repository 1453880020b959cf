// The phone's own messages as text, for the text log and for standard output.
#pragma once

#include <span>

#include "link/extended_message.h"
#include "platform/export.h"

class DiagConnection;

/// MessageText turns packets that the phone sends unasked (log records, debug messages, event reports) into
/// readable text. Text goes to the text log under the category that the caller names, and to standard
/// output only when asked for. What a short packet lacks is shown as 0 or as an empty text.
///
/// Caller's thread; the receiving side may go on adding to the phone-log queue meanwhile.
class QUILLET_API MessageText {
public:
    explicit MessageText(DiagConnection& connection) : m_connection(connection) {}
    MessageText(const MessageText&) = delete;
    MessageText& operator=(const MessageText&) = delete;

    /// AddUserAsyncLogMessageToTextLog describes one packet. Always true: an unknown kind is described as
    /// such. The packet's length is not known here, so it must stand in a buffer of at least 4096 readable
    /// bytes (as the items of the queues do) or be complete: 20 bytes of a log record, 79 of a debug
    /// message, an extended debug message as for ParseExtendedMessage.
    bool AddUserAsyncLogMessageToTextLog(unsigned int iCategory, unsigned char* pPacket, bool bToTextLog,
                                         bool bToStdout);

    /// DumpAsyncMessageToTextLog takes every packet out of the phone-log queue and describes it; with bRaw
    /// its bytes come first, in hex. Always false, also when everything went well.
    bool DumpAsyncMessageToTextLog(unsigned int iCategory, bool bToStdout, bool bToTextLog, bool bRaw);

    /// DIAG_ParseExtendedMessage decodes an extended debug message, of whose buffer ParseExtendedMessage
    /// tells. False, with *pMessage unchanged, for another packet and for null.
    bool DIAG_ParseExtendedMessage(unsigned char* pPacket, ExtendedMessage* pMessage);

private:
    DiagConnection& m_connection;
};
