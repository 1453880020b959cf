// Compiled and never run: users of the connection object reach every operation. The fuzzer of answers, which
// is compiled with this file, calls those of the command families; here are the connection's own.
#include "qlib/diag_ftm.h"

namespace {

template <auto... aOperations>
constexpr size_t kReached = sizeof...(aOperations);

using D = Diag_FTM;
static_assert(
    kReached<&D::OpenPort, &D::ClosePort, &D::IsPhoneConnected, &D::DisconnectAndWaitForReconnection,
             &D::SendSync, &D::SendASync, &D::SendRAW, &D::SetStartFlag, &D::SetPacketMode, &D::SetDTR_State,
             &D::SetRTS_State, &D::FlushRxBuffer, &D::SetData2DiagSearch, &D::ConfigureTimeOut,
             &D::GetTimeOut, &D::StartTimer, &D::GetTimerElapsed, &D::StopTimer, &D::PrintTimer,
             &D::AddEventListener, &D::RemoveEventListener, &D::ConfigureAsyncMessageCallBack,
             &D::StartLogging, &D::StopLogging, &D::SetLogFlags, &D::ConfigureLibraryTextLogCallBack,
             &D::AddUserMessageToTextLog, &D::GetDataLogFileHandler, &D::StartLogFilePlaybackMode,
             &D::StopLogFilePlaybackMode, &D::AddUserAsyncLogMessageToTextLog, &D::DumpAsyncMessageToTextLog,
             &D::DIAG_ParseExtendedMessage, &D::GetCommandType, &D::GetSystemMode, &D::GetRfMode,
             &D::IsCameraStarted, &D::IsRadioSessionActive, &D::EFS2_LastWriteOpenedTarget,
             &D::ConfigureEfsCallbacks, &D::EFS2_DIAG_ABORT> != 0);

} // namespace
