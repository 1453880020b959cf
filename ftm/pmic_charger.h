// The chargers of the power-management chip.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// PmicCharger sets the chargers and their limits. Every command is one request and its response, within
/// QMSL_TimeOut_SyncRequest. True means that the phone answered, in any system mode. Values are chip-specific
/// and passed on unchanged. Caller's thread. The frame must outlive it.
class QUILLET_API PmicCharger {
public:
    explicit PmicCharger(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_PMIC_CHG_SET_SWITCH_STATE sets one of the switches between chargers and battery.
    bool FTM_PMIC_CHG_SET_SWITCH_STATE(unsigned char iChargerSwitchType, unsigned char iChargerSwitchCommand);

    /// FTM_PMIC_CONFIG_WALL_PULSE_CHGR sets the times of the pulse charger.
    bool FTM_PMIC_CONFIG_WALL_PULSE_CHGR(unsigned char iChargerType, unsigned char iTimeOn,
                                         unsigned char iTimeOff, unsigned char iTimeDone);
    /// FTM_PMIC_CONFIG_WALL_PULSE_CHGR_VBAT_DET: the battery voltage that the pulse charger detects.
    bool FTM_PMIC_CONFIG_WALL_PULSE_CHGR_VBAT_DET(unsigned char iVbattDetectVoltage);
    /// FTM_PMIC_CONFIG_WALL_CHGR_TRANSISTOR_LIMITS, FTM_PMIC_CONFIG_TRICKLE_CHARGER: the largest current, and
    /// voltage, of those chargers.
    bool FTM_PMIC_CONFIG_WALL_CHGR_TRANSISTOR_LIMITS(unsigned char iChargerMaxCurrent,
                                                     unsigned char iChargerMaxVoltage);
    bool FTM_PMIC_CONFIG_TRICKLE_CHARGER(unsigned char iChargerMaxCurrent);
    /// FTM_PMIC_CONFIG_COIN_CELL_CHGR: voltage and series resistor of the coin-cell charger.
    bool FTM_PMIC_CONFIG_COIN_CELL_CHGR(unsigned char iVoltageSetting, unsigned char iResistorSetting);
    /// FTM_PMIC_CONFIG_BATT_ALARM: the voltages between which the battery raises no alarm.
    bool FTM_PMIC_CONFIG_BATT_ALARM(unsigned short iUpperLimit, unsigned short iLowerLimit,
                                    unsigned char iHysteresisSetting);
    /// FTM_PMIC_CONFIG_USB_TRANSISTOR_LIMITS: the largest current that is drawn from USB.
    bool FTM_PMIC_CONFIG_USB_TRANSISTOR_LIMITS(unsigned char iChargerMaxCurrent);
    /// FTM_PMIC_CONFIG_PWR_CTRL_LIMIT: the largest power of a charger.
    bool FTM_PMIC_CONFIG_PWR_CTRL_LIMIT(unsigned char iChargerType, unsigned char iMaxPower);

private:
    CommandFrame& m_frame;
};
