// The connection's text log: categorised lines in a file and to a callback.
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>

#include "link/text_log_callback.h"
#include "platform/export.h"
#include "platform/types.h"

/// DataLogFileHandler writes one connection's text log. A line of the file reads: elapsed milliseconds, a
/// tab, a comma, the category's name, a comma, the text. The file and the default name lie in the
/// process's current directory; it is opened by the first line after a start, and flushed after each line.
///
/// Threads: any thread may log; one lock is held around one message (format, file, callback), so lines
/// never mix. The mask is tested before anything is formatted.
class QUILLET_API DataLogFileHandler {
public:
    /// Nothing is written at first: the mask is 0 and output is off. sLogFileName may be null.
    explicit DataLogFileHandler(const char* sLogFileName = nullptr);
    /// Ends the file with a "Stop Log" line.
    virtual ~DataLogFileHandler();
    DataLogFileHandler(const DataLogFileHandler&) = delete;
    DataLogFileHandler& operator=(const DataLogFileHandler&) = delete;

    /// LogMessage writes a message (printf conventions) under a category when the mask lets it through.
    /// Texts that come from outside go through "%s".
    void LogMessage(unsigned int iCategory, const char* sFormat, ...) QUILLET_PRINTF(3, 4);

    /// LogHex writes a message whose end is the hex text of iLength bytes. sFormat is the text before it.
    void LogHex(unsigned int iCategory, const unsigned char* pData, int iLength, const char* sFormat, ...)
        QUILLET_PRINTF(5, 6);

    /// Wants tells whether messages of a category are written at all.
    bool Wants(unsigned int iCategory) const { return (iCategory & m_iLogFlags) != 0; }

    /// WriteLine writes one line to the file, whatever the mask.
    void WriteLine(const char* sText, int iCategory);

    /// RestartLog ends the file, when one is open, and begins it anew. Always true.
    virtual bool RestartLog();
    /// CloseLog ends the file and restarts the elapsed time.
    void CloseLog();

    /// Start names the file (cut to 202 characters), sets the mask, switches output on and restarts.
    bool Start(const char* sFileName, unsigned int iLogFlags);
    /// Stop forgets the file's name and closes it; the callback keeps receiving messages.
    void Stop();
    void SetFlags(unsigned int iLogFlags) { m_iLogFlags = iLogFlags; }
    void SetCallBack(void* pUserData, TextLogCallBack pfnCallBack);

    /// FormatHexBytes renders bytes as two upper-case hex digits and a blank each, zero-terminated, into
    /// a buffer of at least kHexTextSize characters; at most 3967 bytes are rendered.
    static void FormatHexBytes(char* sOut, const unsigned char* pData, int iLength);
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
    FILE* m_hLogFile = nullptr;
    bool m_bLoggingEnabled = false;
    DWORD m_iStartTime_ms = 0;
    TextLogCallBack m_pfnTextLogCallBack = nullptr;
    void* m_pTextLogUserData = nullptr;
};
