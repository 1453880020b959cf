#include "diag/frame_commands.h"

#include "diag/command_frame.h"

bool FrameCommands::Send(DWORD iReadDelay_ms) {
    return m_frame.Send(iReadDelay_ms);
}

bool FrameCommands::SendWithDifferentResponseCmd(unsigned char iExpected, DWORD iReadDelay_ms) {
    return m_frame.SendWithDifferentResponseCmd(iExpected, iReadDelay_ms);
}

bool FrameCommands::SendFtmCmd() {
    return m_frame.SendFtmCmd();
}

bool FrameCommands::SendFtmCmd75() {
    return m_frame.SendFtmCmd75();
}

bool FrameCommands::SendFtmCmd59() {
    return m_frame.SendFtmCmd59();
}

bool FrameCommands::SendEVDO() {
    return m_frame.SendEVDO();
}

bool FrameCommands::SendCDMA2000() {
    return m_frame.SendCDMA2000();
}

void FrameCommands::SetCommandType(FTM_Command_Type eCommandType) {
    m_frame.SetCommandType(eCommandType);
}

FTM_Command_Type FrameCommands::GetCommandType() const {
    return m_frame.GetCommandType();
}

void FrameCommands::SetSystemMode(FTM_Mode_Id_Enum iSystem_Mode) {
    m_frame.SetSystemMode(iSystem_Mode);
}

FTM_Mode_Id_Enum FrameCommands::GetSystemMode() const {
    return m_frame.GetSystemMode();
}
