// Shared by the commands of the power-management chip.
#pragma once

#include "ftm/ftm_command.h"

/// FTM_PMIC_Cmd_Id_Enum: the part of the chip that a command addresses.
enum FTM_PMIC_Cmd_Id_Enum : unsigned short {
    FTM_PMIC_CMD_CLOCK = 0,
    FTM_PMIC_CMD_CHARGER = 1,
    FTM_PMIC_CMD_MULTIPLEXER = 3,
    FTM_PMIC_CMD_REGULATOR = 4,
    FTM_PMIC_CMD_INTERRUPT = 5,
    FTM_PMIC_CMD_DRIVER = 6,
};

/// FTM_PMIC_SubCmd_Id_Enum: the operation on that part. Each part has its own numbers, and each number
/// appears only in the method named after its command.
enum FTM_PMIC_SubCmd_Id_Enum : unsigned char {};

/// BeginPmic begins a request; the command's fields follow.
inline RequestBuilder& BeginPmic(CommandFrame& frame, FTM_PMIC_Cmd_Id_Enum eCommand,
                                 unsigned char iSubcommand) {
    return frame.FormatPMIC_FTMHeader(eCommand, FTM_PMIC_SubCmd_Id_Enum{iSubcommand});
}

/// SendPmic exchanges a command whose entry line shows all its fields. True when the phone answered.
template <class... Fields>
bool SendPmic(CommandFrame& frame, FTM_PMIC_Cmd_Id_Enum eCommand, unsigned char iSubcommand,
              TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, BeginPmic(frame, eCommand, iSubcommand), entry, fields...);
    return frame.Send(0);
}
