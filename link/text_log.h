// The connection's text log: lines with categories, written to a file and to a callback.
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>

#include "link/text_log_callback.h"
#include "platform/export.h"
#include "platform/types.h"

/// DataLogFileHandler writes one connection's text log. A line of the file is: elapsed milliseconds, tab,
/// comma, name of the category, comma, text. Relative file names refer to the process's current directory.
/// The first line after a start opens the file; every line is flushed.
///
/// Threads: any thread may log. One lock is held for a whole message (format, file, callback), so lines never
/// mix. The mask is tested before anything is formatted.
class QUILLET_API DataLogFileHandler {
public:
    /// Nothing is written at first: the mask is 0 and output is disabled. sLogFileName may be null.
    explicit DataLogFileHandler(const char* sLogFileName = nullptr);
    /// Ends the file with a "Stop Log" line.
    virtual ~DataLogFileHandler();
    DataLogFileHandler(const DataLogFileHandler&) = delete;
    DataLogFileHandler& operator=(const DataLogFileHandler&) = delete;

    /// LogMessage writes a message (printf conventions) if the mask includes its category. Texts from outside
    /// must be passed through "%s".
    void LogMessage(unsigned int iCategory, const char* sFormat, ...) QUILLET_PRINTF(3, 4);

    /// LogHex writes a message of formatted text followed by the hex text of iLength bytes.
    void LogHex(unsigned int iCategory, const unsigned char* pData, int iLength, const char* sFormat, ...)
        QUILLET_PRINTF(5, 6);

    /// Wants returns whether the mask includes a category.
    bool Wants(unsigned int iCategory) const { return (iCategory & m_iLogFlags) != 0; }

    /// WriteLine writes one line to the file, regardless of the mask.
    void WriteLine(const char* sText, int iCategory);

    /// RestartLog ends an open file and starts it anew. Always true.
    virtual bool RestartLog();
    /// CloseLog ends the file and restarts the elapsed time.
    void CloseLog();

    /// Start sets the file name (cut to 202 characters) and the mask, enables output and restarts.
    bool Start(const char* sFileName, unsigned int iLogFlags);
    /// Stop closes the file and forgets its name; the callback still receives messages.
    void Stop();
    /// SetFlags replaces the mask.
    void SetFlags(unsigned int iLogFlags) { m_iLogFlags = iLogFlags; }
    /// SetCallBack replaces the receiver of messages (null: none).
    void SetCallBack(void* pUserData, TextLogCallBack pfnCallBack);

    /// FormatHexBytes writes each byte as two upper-case hex digits and a blank, zero-terminated, into a
    /// buffer of at least kHexTextSize characters. Bytes after the 3967th are ignored.
    static void FormatHexBytes(char* sOut, const unsigned char* pData, int iLength);
    /// The size of FormatHexBytes's buffer.
    static constexpr size_t kHexTextSize = 12200;

private:
    size_t BeginText(unsigned int iCategory, const char* sFormat, va_list arguments) QUILLET_PRINTF(3, 0);
    void WriteMessage(unsigned int iCategory);
    void EndFile();
    DWORD Elapsed_ms() const;
    bool OpenFile();

    mutable std::recursive_mutex m_lock; // recursive: the callback may log
    char m_sText[12284];                 // one message, with its indent
    std::string m_sLogFileName;
    std::atomic<unsigned> m_iLogFlags{0};
    std::FILE* m_hLogFile = nullptr;
    bool m_bLoggingEnabled = false;
    DWORD m_iStartTime_ms = 0;
    TextLogCallBack m_pfnTextLogCallBack = nullptr;
    void* m_pTextLogUserData = nullptr;
};
