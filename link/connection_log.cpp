// A connection's text log.
#include <cstdio>

#include "link/connection_state.h"
#include "link/diag_connection.h"

namespace {

constexpr const char* kAutoLogMarker = "QMSL_auto_start_log.txt";
constexpr const char* kAutoLogName = "QMSL_Log.txt";

} // namespace

DataLogFileHandler* DiagConnection::GetDataLogFileHandler() {
    return &m_pState->textLog;
}

bool DiagConnection::StartLogging(const char* sFileName) {
    return m_pState->textLog.Start(sFileName, m_pState->iLogFlags);
}

bool DiagConnection::StopLogging() {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_StopLogging()");
    m_pState->textLog.Stop();
    return true;
}

bool DiagConnection::SetLogFlags(unsigned int uiLogFlags) {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_SetLogFlags(uiLogFlags=0x%04X)", uiLogFlags);
    m_pState->textLog.SetFlags(uiLogFlags);
    m_pState->iLogFlags = uiLogFlags;
    return true;
}

void DiagConnection::ConfigureLibraryTextLogCallBack(void* pUserData, TextLogCallBack pfnCallBack) {
    m_pState->textLog.SetCallBack(pUserData, pfnCallBack);
}

bool DiagConnection::AddUserMessageToTextLog(unsigned int iCategory, const char* sText, bool bToStdout) {
    if (bToStdout)
        std::fputs(sText, stdout);
    m_pState->textLog.LogMessage(iCategory, "%s", sText);
    return true;
}

void DiagConnection::DIAG_FTM_CheckAutoTextLog() {
    std::FILE* pMarker = std::fopen(kAutoLogMarker, "r");
    if (pMarker == nullptr)
        return;
    std::fclose(pMarker);
    SetLogFlags(kDefaultLogFlags);
    StartLogging(kAutoLogName);
}
