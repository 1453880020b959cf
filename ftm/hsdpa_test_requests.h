// The requests of the HSDPA block-error-rate test.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// HsdpaTestRequests: further requests of the WCDMA test, with results as in GsmTestRequests, except that the
/// status is one byte later in the responses. Values are phone-specific. Caller's thread. The frame must
/// outlive it.
class QUILLET_API HsdpaTestRequests {
public:
    /// The bytes in each array of codes.
    static constexpr size_t kCodes = 4;
    /// The bytes in each array of memory partitions.
    static constexpr size_t kMemPartitions = 8;

    explicit HsdpaTestRequests(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_HSDPA_BLER_CMD_START_HS, FTM_HSDPA_BLER_CMD_STOP_HS start and stop the high-speed channels.
    bool FTM_HSDPA_BLER_CMD_START_HS(unsigned char& iStatus);
    bool FTM_HSDPA_BLER_CMD_STOP_HS(unsigned char& iStatus);
    /// FTM_HSDPA_BLER_CMD_RECONFIG_HS applies what was configured to running channels.
    bool FTM_HSDPA_BLER_CMD_RECONFIG_HS(unsigned char iReconfigBitmask, unsigned char& iStatus);
    /// FTM_HSDPA_BLER_CMD_CONFIG_HS_... configure one channel each.
    bool FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH(unsigned short iValue, unsigned char& iStatus);
    /// aiCodes: always kCodes bytes, whatever the value of iNumCodes.
    bool FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH(unsigned char iNumCodes, const unsigned char* aiCodes,
                                           unsigned char& iStatus);
    /// aiMemPartitionInfo: always kMemPartitions bytes.
    bool FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH(unsigned short iH_RNTI, unsigned char iNum_HARQ_Processes,
                                           unsigned char bMemPartitionValid,
                                           const unsigned char* aiMemPartitionInfo, unsigned char& iStatus);
    /// FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH configures the uplink control channel.
    bool FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH(unsigned char iCPICH_PowerOffset,
                                            unsigned char iCQI_FeedbackCycle,
                                            unsigned char iCQI_RepetitionFactor, unsigned char iDeltaCQI,
                                            unsigned char iDeltaACK, unsigned char iDeltaNACK,
                                            unsigned char iACK_NACK_RepetitionFactor, unsigned char& iStatus);

private:
    CommandFrame& m_frame;
};
