#include "ftm/pmic_signals.h"

#include "ftm/ftm_command.h"
#include "ftm/pmic_command.h"

bool PmicSignals::FTM_PMIC_AMUX_CONFIG(unsigned char iMuxSelect, unsigned char iMuxScale) {
    return SendPmic(m_frame, FTM_PMIC_CMD_MULTIPLEXER, 0,
                    "QLIB_FTM_PMIC_AMUX_CONFIG( iMuxSelect =%d, iMuxScale = %d)", iMuxSelect, iMuxScale);
}

bool PmicSignals::FTM_PMIC_INT_GET_RT_STATUS(unsigned char& iInterruptStatusId,
                                             unsigned char& iInterruptStatus) {
    static constexpr char sLine[] =
        "QLIB_FTM_PMIC_INT_GET_RT_STATUS( iInterruptStatusId = %d, iInterruptStatus = %d)";
    return SendPmic(m_frame, FTM_PMIC_CMD_INTERRUPT, 0, sLine, iInterruptStatusId, iInterruptStatus) &&
           TakeLogged(m_frame, sLine, std::tuple(iInterruptStatusId), iInterruptStatus);
}

bool PmicSignals::FTM_PMIC_INT_IRQ_CLR(unsigned char iInterruptHandler) {
    return SendPmic(m_frame, FTM_PMIC_CMD_INTERRUPT, 1, "QLIB_FTM_PMIC_INT_IRQ_CLR( iInterruptHandler = %d)",
                    iInterruptHandler);
}

bool PmicSignals::FTM_SET_PMIC_DRIVE_LEVEL(unsigned char iHighDrivePinID, unsigned char iDriveLevel) {
    return SendPmic(m_frame, FTM_PMIC_CMD_DRIVER, 0,
                    "QLIB_FTM_SET_PMIC_DRIVE_LEVEL( iHighDrivePinID = %d, iDriveLevel = %d)", iHighDrivePinID,
                    iDriveLevel);
}

bool PmicSignals::FTM_PMIC_SPKR_CONFIG(unsigned char iSpeakerCMD, unsigned char iSpeakerGain,
                                       unsigned char iSpeakerDelay) {
    return SendPmic(m_frame, FTM_PMIC_CMD_DRIVER, 1,
                    "QLIB_FTM_PMIC_SPKR_CONFIG( iSpeakerCMD = %d, iSpeakerGain = %d, iSpeakerDelay = %d)",
                    iSpeakerCMD, iSpeakerGain, iSpeakerDelay);
}
