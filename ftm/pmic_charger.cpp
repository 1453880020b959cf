#include "ftm/pmic_charger.h"

#include "ftm/pmic_command.h"

bool PmicCharger::FTM_PMIC_CHG_SET_SWITCH_STATE(unsigned char iChargerSwitchType,
                                                unsigned char iChargerSwitchCommand) {
    m_frame.Log().LogMessage(
        LOG_FN, "QLIB_FTM_PMIC_CHG_SET_SWITCH_STATE( iChargerSwitchType = %d, iChargerSwitchCommand = %d)",
        iChargerSwitchType, iChargerSwitchCommand);
    return SetPmic(m_frame, FTM_PMIC_CMD_CHARGER, 0, {iChargerSwitchType, iChargerSwitchCommand});
}

bool PmicCharger::Configure(unsigned char iSelector, std::initializer_list<unsigned char> values) {
    BeginPmic(m_frame, FTM_PMIC_CMD_CHARGER, 1).U8(iSelector).Bytes({values.begin(), values.size()});
    return m_frame.Send(0);
}

bool PmicCharger::FTM_PMIC_CONFIG_WALL_PULSE_CHGR(unsigned char iChargerType, unsigned char iTimeOn,
                                                  unsigned char iTimeOff, unsigned char iTimeDone) {
    m_frame.Log().LogMessage(LOG_FN,
                             "QLIB_FTM_PMIC_CONFIG_WALL_PULSE_CHGR( iChargerType = %d, iTimeOn = %d, "
                             "iTimeOff = %d, iTimeDone = %d)",
                             iChargerType, iTimeOn, iTimeOff, iTimeDone);
    return Configure(0, {iChargerType, iTimeOn, iTimeOff, iTimeDone});
}

bool PmicCharger::FTM_PMIC_CONFIG_WALL_PULSE_CHGR_VBAT_DET(unsigned char iVbattDetectVoltage) {
    m_frame.Log().LogMessage(LOG_FN,
                             "QLIB_FTM_PMIC_CONFIG_WALL_PULSE_CHGR_VBAT_DET( iVbattDetectVoltage = %d)",
                             iVbattDetectVoltage);
    return Configure(1, {iVbattDetectVoltage});
}

bool PmicCharger::FTM_PMIC_CONFIG_WALL_CHGR_TRANSISTOR_LIMITS(unsigned char iChargerMaxCurrent,
                                                              unsigned char iChargerMaxVoltage) {
    m_frame.Log().LogMessage(
        LOG_FN,
        "QLIB_FTM_PMIC_CONFIG_WALL_CHGR_TRANSISTOR_LIMITS( iChargerMaxCurrent = %d, iChargerMaxVoltage = %d)",
        iChargerMaxCurrent, iChargerMaxVoltage);
    return Configure(2, {iChargerMaxCurrent, iChargerMaxVoltage});
}

bool PmicCharger::FTM_PMIC_CONFIG_TRICKLE_CHARGER(unsigned char iChargerMaxCurrent) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_PMIC_CONFIG_TRICKLE_CHARGER( iChargerMaxCurrent = %d)",
                             iChargerMaxCurrent);
    return Configure(3, {iChargerMaxCurrent});
}

bool PmicCharger::FTM_PMIC_CONFIG_COIN_CELL_CHGR(unsigned char iVoltageSetting,
                                                 unsigned char iResistorSetting) {
    m_frame.Log().LogMessage(
        LOG_FN, "QLIB_FTM_PMIC_CONFIG_COIN_CELL_CHGR( iVoltageSetting = %d, iResistorSetting = %d)",
        iVoltageSetting, iResistorSetting);
    return Configure(4, {iVoltageSetting, iResistorSetting});
}

bool PmicCharger::FTM_PMIC_CONFIG_BATT_ALARM(unsigned short iUpperLimit, unsigned short iLowerLimit,
                                             unsigned char iHysteresisSetting) {
    m_frame.Log().LogMessage(
        LOG_FN,
        "QLIB_FTM_PMIC_CONFIG_BATT_ALARM( iUpperLimit = %d, iLowerLimit = %d, iHysteresisSetting = %d)",
        iUpperLimit, iLowerLimit, iHysteresisSetting);
    BeginPmic(m_frame, FTM_PMIC_CMD_CHARGER, 1)
        .U8(5)
        .U16(iUpperLimit)
        .U16(iLowerLimit)
        .U8(iHysteresisSetting);
    return m_frame.Send(0);
}

bool PmicCharger::FTM_PMIC_CONFIG_USB_TRANSISTOR_LIMITS(unsigned char iChargerMaxCurrent) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_PMIC_CONFIG_USB_TRANSISTOR_LIMITS( iChargerMaxCurrent = %d)",
                             iChargerMaxCurrent);
    return Configure(6, {iChargerMaxCurrent});
}

bool PmicCharger::FTM_PMIC_CONFIG_PWR_CTRL_LIMIT(unsigned char iChargerType, unsigned char iMaxPower) {
    m_frame.Log().LogMessage(LOG_FN,
                             "QLIB_FTM_PMIC_CONFIG_PWR_CTRL_LIMIT( iChargerType = %d, iMaxPower = %d)",
                             iChargerType, iMaxPower);
    return Configure(7, {iChargerType, iMaxPower});
}
