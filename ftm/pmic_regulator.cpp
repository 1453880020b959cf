#include "ftm/pmic_regulator.h"

#include "ftm/ftm_command.h"
#include "ftm/pmic_command.h"

bool PmicRegulator::FTM_PMIC_VREG_CONTROL(unsigned char iVRegCmd, DWORD iVRegSelect) {
    return SendPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 0,
                    "QLIB_FTM_PMIC_VREG_CONTROL( iVRegCmd = %d, iVRegSelect = %d)", iVRegCmd, iVRegSelect);
}

bool PmicRegulator::FTM_PMIC_VREG_SET_LEVEL(unsigned char iVRegSelect, unsigned short iVoltageLevel) {
    return SendPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 1,
                    "QLIB_FTM_PMIC_VREG_SET_LEVEL( iVRegSelect = %d, iVoltageLevel = %d)", iVRegSelect,
                    iVoltageLevel);
}

bool PmicRegulator::FTM_PMIC_VREG_CONFIG_SMPS_MODE(unsigned char iVRegSelect, unsigned char iSmpsMode) {
    return SendPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 2,
                    "QLIB_FTM_PMIC_VREG_CONFIG_SMPS_MODE( iVRegSelect = %d, iSmpsMode = %d)", iVRegSelect,
                    iSmpsMode);
}

bool PmicRegulator::FTM_PMIC_VREG_CONFIG_LDO_PD_SW(unsigned char iVRegCmd, unsigned char iVRegSelect) {
    return SendPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 3,
                    "QLIB_FTM_PMIC_VREG_CONFIG_LDO_PD_SW( iVRegCmd = %d, iVRegSelect = %d)", iVRegCmd,
                    iVRegSelect);
}

bool PmicRegulator::FTM_PMIC_VREG_CONFIG_LP_MODE_CONTROL(unsigned char iVRegCmd, unsigned char iVRegSelect) {
    return SendPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 4,
                    "QLIB_FTM_PMIC_VREG_CONFIG_LP_MODE_CONTROL( iVRegCmd = %d, iVRegSelect = %d)", iVRegCmd,
                    iVRegSelect);
}

bool PmicRegulator::FTM_PMIC_VREG_SMPS_CLK_CONFIG(unsigned char iSmpsClockCmd,
                                                  unsigned char iSmpsClockConfig) {
    return SendPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 5,
                    "QLIB_FTM_PMIC_VREG_SMPS_CLK_CONFIG( iSmpsClockCmd = %d, iSmpsClockConfig = %d)",
                    iSmpsClockCmd, iSmpsClockConfig);
}
