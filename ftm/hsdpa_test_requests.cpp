#include "ftm/hsdpa_test_requests.h"

RequestBuilder& HsdpaTestRequests::Begin(const char* sEntry, unsigned short iId) {
    m_frame.Log().LogMessage(LOG_FN, "%s", sEntry);
    return BeginTest(m_frame, FTM_MODE_ID_WCDMA_BER, iId);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_START_HS(unsigned char& iStatus) {
    Begin("QLIB_FTM_HSDPA_BLER_CMD_START_HS()", 256);
    return Exchange(iStatus);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_STOP_HS(unsigned char& iStatus) {
    Begin("QLIB_FTM_HSDPA_BLER_CMD_STOP_HS()", 257);
    return Exchange(iStatus);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_RECONFIG_HS(unsigned char iReconfigBitmask,
                                                       unsigned char& iStatus) {
    Begin("QLIB_FTM_HSDPA_BLER_CMD_RECONFIG_HS()", 258).U8(iReconfigBitmask);
    return Exchange(iStatus);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH(unsigned short iValue, unsigned char& iStatus) {
    Begin("QLIB_FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH()", 259).U16(iValue);
    return Exchange(iStatus);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH(unsigned char iNumCodes,
                                                          const unsigned char* aiCodes,
                                                          unsigned char& iStatus) {
    Begin("QLIB_FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH()", 260).U8(iNumCodes).Bytes({aiCodes, kCodes});
    return Exchange(iStatus);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH(unsigned short iH_RNTI,
                                                          unsigned char iNum_HARQ_Processes,
                                                          unsigned char bMemPartitionValid,
                                                          const unsigned char* aiMemPartitionInfo,
                                                          unsigned char& iStatus) {
    Begin("QLIB_FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH()", 261)
        .U16(iH_RNTI)
        .U8(iNum_HARQ_Processes)
        .U8(bMemPartitionValid)
        .Bytes({aiMemPartitionInfo, kMemPartitions});
    return Exchange(iStatus);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH(
    unsigned char iCPICH_PowerOffset, unsigned char iCQI_FeedbackCycle, unsigned char iCQI_RepetitionFactor,
    unsigned char iDeltaCQI, unsigned char iDeltaACK, unsigned char iDeltaNACK,
    unsigned char iACK_NACK_RepetitionFactor, unsigned char& iStatus) {
    m_frame.Log().LogMessage(
        LOG_FN,
        "QLIB_FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH(iCPICH_PowerOffset = %d, iCQI_FeedbackCycle = %d, "
        "iCQI_RepetitionFactor = %d, iDeltaCQI = %d, iDeltaACK = %d, iDeltaNACK = %d, "
        "iACK_NACK_RepetitionFactor = %d)",
        iCPICH_PowerOffset, iCQI_FeedbackCycle, iCQI_RepetitionFactor, iDeltaCQI, iDeltaACK, iDeltaNACK,
        iACK_NACK_RepetitionFactor);
    BeginTest(m_frame, FTM_MODE_ID_WCDMA_BER, 262)
        .U8(iCPICH_PowerOffset)
        .U8(iCQI_FeedbackCycle)
        .U8(iCQI_RepetitionFactor)
        .U8(iDeltaCQI)
        .U8(iDeltaACK)
        .U8(iDeltaNACK)
        .U8(iACK_NACK_RepetitionFactor);
    return Exchange(iStatus);
}
