// What the commands of the power-management chip share.
#pragma once

#include <initializer_list>

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

/// SetPmic sends a command whose fields are bytes and whose answer carries nothing. True when it was
/// answered.
inline bool SetPmic(CommandFrame& frame, FTM_PMIC_Cmd_Id_Enum eCommand, unsigned char iSubcommand,
                    std::initializer_list<unsigned char> fields) {
    BeginPmic(frame, eCommand, iSubcommand).Bytes({fields.begin(), fields.size()});
    return frame.Send(0);
}
