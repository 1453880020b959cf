#include "ftm/pmic_charger.h"

#include "ftm/ftm_command.h"
#include "ftm/pmic_command.h"

namespace {

/// All configuration is one command. A selector determines the meaning of the values after it.
template <class... Values>
bool Configure(CommandFrame& frame, unsigned char iSelector, TextFor<Values...> entry, Values... values) {
    AppendLogged(frame, BeginPmic(frame, FTM_PMIC_CMD_CHARGER, 1).U8(iSelector), entry, values...);
    return frame.Send(0);
}

} // namespace

bool PmicCharger::FTM_PMIC_CHG_SET_SWITCH_STATE(unsigned char iChargerSwitchType,
                                                unsigned char iChargerSwitchCommand) {
    return SendPmic(
        m_frame, FTM_PMIC_CMD_CHARGER, 0,
        "QLIB_FTM_PMIC_CHG_SET_SWITCH_STATE( iChargerSwitchType = %d, iChargerSwitchCommand = %d)",
        iChargerSwitchType, iChargerSwitchCommand);
}

bool PmicCharger::FTM_PMIC_CONFIG_WALL_PULSE_CHGR(unsigned char iChargerType, unsigned char iTimeOn,
                                                  unsigned char iTimeOff, unsigned char iTimeDone) {
    return Configure(m_frame, 0,
                     "QLIB_FTM_PMIC_CONFIG_WALL_PULSE_CHGR( iChargerType = %d, iTimeOn = %d, "
                     "iTimeOff = %d, iTimeDone = %d)",
                     iChargerType, iTimeOn, iTimeOff, iTimeDone);
}

bool PmicCharger::FTM_PMIC_CONFIG_WALL_PULSE_CHGR_VBAT_DET(unsigned char iVbattDetectVoltage) {
    return Configure(m_frame, 1, "QLIB_FTM_PMIC_CONFIG_WALL_PULSE_CHGR_VBAT_DET( iVbattDetectVoltage = %d)",
                     iVbattDetectVoltage);
}

bool PmicCharger::FTM_PMIC_CONFIG_WALL_CHGR_TRANSISTOR_LIMITS(unsigned char iChargerMaxCurrent,
                                                              unsigned char iChargerMaxVoltage) {
    return Configure(m_frame, 2,
                     "QLIB_FTM_PMIC_CONFIG_WALL_CHGR_TRANSISTOR_LIMITS( iChargerMaxCurrent = %d, "
                     "iChargerMaxVoltage = %d)",
                     iChargerMaxCurrent, iChargerMaxVoltage);
}

bool PmicCharger::FTM_PMIC_CONFIG_TRICKLE_CHARGER(unsigned char iChargerMaxCurrent) {
    return Configure(m_frame, 3, "QLIB_FTM_PMIC_CONFIG_TRICKLE_CHARGER( iChargerMaxCurrent = %d)",
                     iChargerMaxCurrent);
}

bool PmicCharger::FTM_PMIC_CONFIG_COIN_CELL_CHGR(unsigned char iVoltageSetting,
                                                 unsigned char iResistorSetting) {
    return Configure(m_frame, 4,
                     "QLIB_FTM_PMIC_CONFIG_COIN_CELL_CHGR( iVoltageSetting = %d, iResistorSetting = %d)",
                     iVoltageSetting, iResistorSetting);
}

bool PmicCharger::FTM_PMIC_CONFIG_BATT_ALARM(unsigned short iUpperLimit, unsigned short iLowerLimit,
                                             unsigned char iHysteresisSetting) {
    return Configure(
        m_frame, 5,
        "QLIB_FTM_PMIC_CONFIG_BATT_ALARM( iUpperLimit = %d, iLowerLimit = %d, iHysteresisSetting = %d)",
        iUpperLimit, iLowerLimit, iHysteresisSetting);
}

bool PmicCharger::FTM_PMIC_CONFIG_USB_TRANSISTOR_LIMITS(unsigned char iChargerMaxCurrent) {
    return Configure(m_frame, 6, "QLIB_FTM_PMIC_CONFIG_USB_TRANSISTOR_LIMITS( iChargerMaxCurrent = %d)",
                     iChargerMaxCurrent);
}

bool PmicCharger::FTM_PMIC_CONFIG_PWR_CTRL_LIMIT(unsigned char iChargerType, unsigned char iMaxPower) {
    return Configure(m_frame, 7, "QLIB_FTM_PMIC_CONFIG_PWR_CTRL_LIMIT( iChargerType = %d, iMaxPower = %d)",
                     iChargerType, iMaxPower);
}
