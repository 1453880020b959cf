// This file is compiled but never run. It proves that programs can call every operation of the library. The
// operations of the command families are called by the fuzzer of responses, which is compiled with this file;
// the connection's own operations and the flat calls are here.
#include "quillet.h"

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
             &D::GetPortError, &D::EFS2_LastFailure, &D::IsCameraStarted, &D::IsRadioSessionActive,
             &D::EFS2_LastWriteOpenedTarget, &D::ConfigureEfsCallbacks, &D::EFS2_DIAG_ABORT> != 0);

static_assert(
    kReached<&QLIB_SetQpstMode, &QLIB_ConnectPort, &QLIB_DisconnectPort, &QLIB_IsPhoneConnected,
             &QLIB_GetPortError, &QLIB_ConfigureCallBacks, &QLIB_ConfigureEfsCallbacks,
             &QLIB_DIAG_GET_FILE_ATTRIBUTES, &QLIB_EFS2_DIAG_ABORT, &QLIB_EfsDirectory, &QLIB_EfsRead,
             &QLIB_EfsWrite, &QLIB_EfsWriteOpenedTarget, &QLIB_EfsLastFailure, &QLIB_EFS2_DIAG_UNLINK,
             &QLIB_EFS2_DIAG_MKDIR, &QLIB_EFS2_DIAG_RMDIR, &QLIB_EFS2_DIAG_READ_LINK,
             &QLIB_EFS2_DIAG_CREATE_LINK, &QLIB_EFS2_DIAG_RENAME, &QLIB_EFS2_DIAG_STAT,
             &QLIB_EFS2_DIAG_STATFS, &QLIB_EFS2_DIAG_OPEN, &QLIB_EFS2_DIAG_READ, &QLIB_EFS2_DIAG_WRITE,
             &QLIB_EFS2_DIAG_CLOSE, &QLIB_EFS2_DIAG_OPENDIR, &QLIB_EFS2_DIAG_READDIR,
             &QLIB_EFS2_DIAG_CLOSEDIR, &QLIB_EFS2_DIAG_MAKE_DIRECTORY, &QLIB_EFS2_DIAG_REMOVE_DIRECTORY,
             &QLIB_EFS2_DIAG_REMOVE_FILE, &QLIB_EFS2_DIAG_MAKE_LINK, &QLIB_EFS2_DIAG_LINK_TARGET> != 0);

} // namespace
