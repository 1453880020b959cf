#include "ftm/pmic_signals.h"

#include "ftm/pmic_command.h"

bool PmicSignals::FTM_PMIC_AMUX_CONFIG(unsigned char iMuxSelect, unsigned char iMuxScale) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_PMIC_AMUX_CONFIG( iMuxSelect =%d, iMuxScale = %d)", iMuxSelect,
                             iMuxScale);
    return SetPmic(m_frame, FTM_PMIC_CMD_MULTIPLEXER, 0, {iMuxSelect, iMuxScale});
}

bool PmicSignals::FTM_PMIC_INT_GET_RT_STATUS(unsigned char& iInterruptStatusId,
                                             unsigned char& iInterruptStatus) {
    const auto log = [&](unsigned iCategory) {
        m_frame.Log().LogMessage(
            iCategory, "QLIB_FTM_PMIC_INT_GET_RT_STATUS( iInterruptStatusId = %d, iInterruptStatus = %d)",
            iInterruptStatusId, iInterruptStatus);
    };
    log(LOG_FN);
    if (!SetPmic(m_frame, FTM_PMIC_CMD_INTERRUPT, 0, {iInterruptStatusId, iInterruptStatus}))
        return false;
    TakeValues(m_frame, iInterruptStatus);
    log(LOG_RET);
    return true;
}

bool PmicSignals::FTM_PMIC_INT_IRQ_CLR(unsigned char iInterruptHandler) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_PMIC_INT_IRQ_CLR( iInterruptHandler = %d)", iInterruptHandler);
    return SetPmic(m_frame, FTM_PMIC_CMD_INTERRUPT, 1, {iInterruptHandler});
}

bool PmicSignals::FTM_SET_PMIC_DRIVE_LEVEL(unsigned char iHighDrivePinID, unsigned char iDriveLevel) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_SET_PMIC_DRIVE_LEVEL( iHighDrivePinID = %d, iDriveLevel = %d)",
                             iHighDrivePinID, iDriveLevel);
    return SetPmic(m_frame, FTM_PMIC_CMD_DRIVER, 0, {iHighDrivePinID, iDriveLevel});
}

bool PmicSignals::FTM_PMIC_SPKR_CONFIG(unsigned char iSpeakerCMD, unsigned char iSpeakerGain,
                                       unsigned char iSpeakerDelay) {
    m_frame.Log().LogMessage(
        LOG_FN, "QLIB_FTM_PMIC_SPKR_CONFIG( iSpeakerCMD = %d, iSpeakerGain = %d, iSpeakerDelay = %d)",
        iSpeakerCMD, iSpeakerGain, iSpeakerDelay);
    return SetPmic(m_frame, FTM_PMIC_CMD_DRIVER, 1, {iSpeakerCMD, iSpeakerGain, iSpeakerDelay});
}
