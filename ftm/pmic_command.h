// What the commands of the power-management chip share.
#pragma once

#include "ftm/ftm_command.h"

/// FTM_PMIC_Cmd_Id_Enum: the part of the chip that a command is for.
enum FTM_PMIC_Cmd_Id_Enum : unsigned short {
    FTM_PMIC_CMD_CLOCK = 0,
    FTM_PMIC_CMD_CHARGER = 1,
    FTM_PMIC_CMD_MULTIPLEXER = 3,
    FTM_PMIC_CMD_REGULATOR = 4,
    FTM_PMIC_CMD_INTERRUPT = 5,
    FTM_PMIC_CMD_DRIVER = 6,
};

/// FTM_PMIC_SubCmd_Id_Enum: what is done with that part. The numbers begin anew for each part; one stands in
/// the method that is named after the command and nowhere else.
enum FTM_PMIC_SubCmd_Id_Enum : unsigned char {};

/// BeginPmic begins a request; the command's fields follow.
inline RequestBuilder& BeginPmic(CommandFrame& frame, FTM_PMIC_Cmd_Id_Enum eCommand,
                                 unsigned char iSubcommand) {
    return frame.FormatPMIC_FTMHeader(eCommand, FTM_PMIC_SubCmd_Id_Enum{iSubcommand});
}

/// SendPmic exchanges a command whose fields are what its entry line shows. True when it was answered.
template <class... Fields>
bool SendPmic(CommandFrame& frame, FTM_PMIC_Cmd_Id_Enum eCommand, unsigned char iSubcommand,
              TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, BeginPmic(frame, eCommand, iSubcommand), entry, fields...);
    return frame.Send(0);
}
