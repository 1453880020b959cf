#include "ftm/pmic_regulator.h"

#include "ftm/pmic_command.h"

bool PmicRegulator::FTM_PMIC_VREG_CONTROL(unsigned char iVRegCmd, DWORD iVRegSelect) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_PMIC_VREG_CONTROL( iVRegCmd = %d, iVRegSelect = %d)", iVRegCmd,
                             AsInt(iVRegSelect));
    BeginPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 0).U8(iVRegCmd).U32(iVRegSelect);
    return m_frame.Send(0);
}

bool PmicRegulator::FTM_PMIC_VREG_SET_LEVEL(unsigned char iVRegSelect, unsigned short iVoltageLevel) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_PMIC_VREG_SET_LEVEL( iVRegSelect = %d, iVoltageLevel = %d)",
                             iVRegSelect, iVoltageLevel);
    BeginPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 1).U8(iVRegSelect).U16(iVoltageLevel);
    return m_frame.Send(0);
}

bool PmicRegulator::FTM_PMIC_VREG_CONFIG_SMPS_MODE(unsigned char iVRegSelect, unsigned char iSmpsMode) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_PMIC_VREG_CONFIG_SMPS_MODE( iVRegSelect = %d, iSmpsMode = %d)",
                             iVRegSelect, iSmpsMode);
    return SetPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 2, {iVRegSelect, iSmpsMode});
}

bool PmicRegulator::FTM_PMIC_VREG_CONFIG_LDO_PD_SW(unsigned char iVRegCmd, unsigned char iVRegSelect) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_PMIC_VREG_CONFIG_LDO_PD_SW( iVRegCmd = %d, iVRegSelect = %d)",
                             iVRegCmd, iVRegSelect);
    return SetPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 3, {iVRegCmd, iVRegSelect});
}

bool PmicRegulator::FTM_PMIC_VREG_CONFIG_LP_MODE_CONTROL(unsigned char iVRegCmd, unsigned char iVRegSelect) {
    m_frame.Log().LogMessage(LOG_FN,
                             "QLIB_FTM_PMIC_VREG_CONFIG_LP_MODE_CONTROL( iVRegCmd = %d, iVRegSelect = %d)",
                             iVRegCmd, iVRegSelect);
    return SetPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 4, {iVRegCmd, iVRegSelect});
}

bool PmicRegulator::FTM_PMIC_VREG_SMPS_CLK_CONFIG(unsigned char iSmpsClockCmd,
                                                  unsigned char iSmpsClockConfig) {
    m_frame.Log().LogMessage(LOG_FN,
                             "QLIB_FTM_PMIC_VREG_SMPS_CLK_CONFIG( iSmpsClockCmd = %d, iSmpsClockConfig = %d)",
                             iSmpsClockCmd, iSmpsClockConfig);
    return SetPmic(m_frame, FTM_PMIC_CMD_REGULATOR, 5, {iSmpsClockCmd, iSmpsClockConfig});
}
