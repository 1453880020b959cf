#include "ftm/hsdpa_test_requests.h"

#include "ftm/test_request.h"

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_START_HS(unsigned char& iStatus) {
    return SendTest(m_frame, kHsdpaTest, 256, iStatus, "QLIB_FTM_HSDPA_BLER_CMD_START_HS()");
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_STOP_HS(unsigned char& iStatus) {
    return SendTest(m_frame, kHsdpaTest, 257, iStatus, "QLIB_FTM_HSDPA_BLER_CMD_STOP_HS()");
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_RECONFIG_HS(unsigned char iReconfigBitmask,
                                                       unsigned char& iStatus) {
    return SendUnshown(m_frame, kHsdpaTest, 258, iStatus, "QLIB_FTM_HSDPA_BLER_CMD_RECONFIG_HS()",
                       iReconfigBitmask);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH(unsigned short iValue, unsigned char& iStatus) {
    return SendUnshown(m_frame, kHsdpaTest, 259, iStatus, "QLIB_FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH()",
                       iValue);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH(unsigned char iNumCodes,
                                                          const unsigned char* aiCodes,
                                                          unsigned char& iStatus) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH()");
    BeginTest(m_frame, kHsdpaTest, 260).U8(iNumCodes).Bytes({aiCodes, kCodes});
    return ExchangeTest(m_frame, kHsdpaTest, iStatus);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH(unsigned short iH_RNTI,
                                                          unsigned char iNum_HARQ_Processes,
                                                          unsigned char bMemPartitionValid,
                                                          const unsigned char* aiMemPartitionInfo,
                                                          unsigned char& iStatus) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH()");
    AppendFields(BeginTest(m_frame, kHsdpaTest, 261), iH_RNTI, iNum_HARQ_Processes, bMemPartitionValid)
        .Bytes({aiMemPartitionInfo, kMemPartitions});
    return ExchangeTest(m_frame, kHsdpaTest, iStatus);
}

bool HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH(
    unsigned char iCPICH_PowerOffset, unsigned char iCQI_FeedbackCycle, unsigned char iCQI_RepetitionFactor,
    unsigned char iDeltaCQI, unsigned char iDeltaACK, unsigned char iDeltaNACK,
    unsigned char iACK_NACK_RepetitionFactor, unsigned char& iStatus) {
    return SendTest(
        m_frame, kHsdpaTest, 262, iStatus,
        "QLIB_FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH(iCPICH_PowerOffset = %d, iCQI_FeedbackCycle = %d, "
        "iCQI_RepetitionFactor = %d, iDeltaCQI = %d, iDeltaACK = %d, iDeltaNACK = %d, "
        "iACK_NACK_RepetitionFactor = %d)",
        iCPICH_PowerOffset, iCQI_FeedbackCycle, iCQI_RepetitionFactor, iDeltaCQI, iDeltaACK, iDeltaNACK,
        iACK_NACK_RepetitionFactor);
}
