// The records that the text-log callback receives, and the categories of messages.
#pragma once

#include "platform/types.h"

// <syslog.h> defines some of these names as macros. They are suspended here, so that both headers can be
// included in either order. Where both are, the unqualified name is that of <syslog.h>, and a program uses
// the number of the category.
#pragma push_macro("LOG_ERR")
#undef LOG_ERR

/// Log categories: one bit each.
enum LogCategory : unsigned {
    LOG_IO = 0x0001,       // bytes sent and received
    LOG_FN = 0x0002,       // a library operation with its arguments
    LOG_RET = 0x0004,      // its result
    LOG_ASYNC = 0x0008,    // unsolicited packets
    LOG_ERR = 0x0010,      // errors of the exchange
    LOG_IO_AHDLC = 0x0020, // framing ...
    LOG_FN_AHDLC = 0x0040,
    LOG_RET_AHDLC = 0x0080,
    LOG_INF_AHDLC = 0x0100,
    LOG_ERR_AHDLC = 0x0200,
    LOG_IO_DEV = 0x0400, // serial port ...
    LOG_FN_DEV = 0x0800,
    LOG_RET_DEV = 0x1000,
    LOG_INF_DEV = 0x2000,
    LOG_ERR_DEV = 0x4000,
};

#pragma pop_macro("LOG_ERR")

/// The mask of a log that is started without another: operations, results, packets, errors.
constexpr unsigned kDefaultLogFlags = 0x421F;

/// What the log callback receives: 1008 bytes.
struct TextLogRecord {
    unsigned short iCategory; // low 16 bits of the category
    unsigned short iReserved; // not set
    DWORD iElapsed_ms;        // since the log was last started or stopped
    char sText[1000];         // the message with its indent, cut to 999 characters
};
static_assert(sizeof(TextLogRecord) == 1008);

/// Called with every written message, on the thread that writes it; iSize is 1008. It may log.
using TextLogCallBack = void (*)(unsigned short iSize, unsigned char* pRecord, void* pUserData);
