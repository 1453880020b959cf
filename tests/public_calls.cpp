// This file is compiled but never run. It proves that users of the connection object can call every
// operation. The operations of the command families are called by the fuzzer of responses, which is compiled
// with this file; the connection's own operations are here.
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
