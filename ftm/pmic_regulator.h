// The voltage regulators of the power-management chip.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// PmicRegulator switches and sets the regulators. Every command is one request and its response, within
/// QMSL_TimeOut_SyncRequest. True means that the phone answered, in any system mode. Values are chip-specific
/// and passed on unchanged. Caller's thread. The frame must outlive it.
class QUILLET_API PmicRegulator {
public:
    explicit PmicRegulator(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_PMIC_VREG_CONTROL: iVRegSelect selects regulators with 32 bits; in all other commands it is the
    /// number of one.
    bool FTM_PMIC_VREG_CONTROL(unsigned char iVRegCmd, DWORD iVRegSelect);
    /// FTM_PMIC_VREG_SET_LEVEL: the output voltage.
    bool FTM_PMIC_VREG_SET_LEVEL(unsigned char iVRegSelect, unsigned short iVoltageLevel);
    /// FTM_PMIC_VREG_CONFIG_SMPS_MODE: the mode of a switched-mode regulator.
    bool FTM_PMIC_VREG_CONFIG_SMPS_MODE(unsigned char iVRegSelect, unsigned char iSmpsMode);
    /// FTM_PMIC_VREG_CONFIG_LDO_PD_SW: the pull-down switch of a linear regulator.
    bool FTM_PMIC_VREG_CONFIG_LDO_PD_SW(unsigned char iVRegCmd, unsigned char iVRegSelect);
    /// FTM_PMIC_VREG_CONFIG_LP_MODE_CONTROL: low-power mode.
    bool FTM_PMIC_VREG_CONFIG_LP_MODE_CONTROL(unsigned char iVRegCmd, unsigned char iVRegSelect);
    /// FTM_PMIC_VREG_SMPS_CLK_CONFIG: the clock of the switched-mode regulators.
    bool FTM_PMIC_VREG_SMPS_CLK_CONFIG(unsigned char iSmpsClockCmd, unsigned char iSmpsClockConfig);

private:
    CommandFrame& m_frame;
};
