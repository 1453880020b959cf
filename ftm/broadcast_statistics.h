// The broadcast receiver's counts of physical-layer packets (PLPs), in channels, flows and overhead (OIS).
#pragma once

#include "ftm/broadcast_records.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// BroadcastStatistics: every command is one request and its response, within QMSL_TimeOut_SyncRequest. True
/// means that the phone answered with all values. A record directly follows the response's header, laid out
/// as described in broadcast_records.h, and is filled completely or stays unchanged. Caller's thread. The
/// frame must outlive it.
class QUILLET_API BroadcastStatistics {
public:
    explicit BroadcastStatistics(CommandFrame& frame) : m_frame(frame) {}

    /// MFLO_RST_PLP_STATS resets all statistics (bResetAll not 0) or those of one channel.
    bool MFLO_RST_PLP_STATS(unsigned char bResetAll, unsigned char iMlcId, unsigned char eSystem);
    /// MFLO_RST_MLC_PLP_STATS resets the statistics of one channel.
    bool MFLO_RST_MLC_PLP_STATS(unsigned char iMlcId, unsigned char eSystem);

    /// MFLO_GET_MLC_INFO: description and statistics of one channel.
    bool MFLO_GET_MLC_INFO(unsigned char iMlcID, unsigned char eSystem, mftypes_active_mlc_info* pMlcInfo);
    /// MFLO_GET_MLC_PLP_STAT_DYN_PARAMS: statistics of one channel.
    bool MFLO_GET_MLC_PLP_STAT_DYN_PARAMS(unsigned char iMlcID, unsigned char eSystem,
                                          mftypes_mlc_plp_stats_type* pPlpStats);
    /// MFLO_GET_MLC_DYN_PARAMS: position of one channel in the present super-frame.
    bool MFLO_GET_MLC_DYN_PARAMS(unsigned char iMlcID, unsigned char eSystem,
                                 mftypes_mlc_dyn_params_type* pDynParams);

    /// MFLO_GET_OIS_PLP_STAT takes four counters from the response's end, in wire order. All are written, or
    /// none.
    bool MFLO_GET_OIS_PLP_STAT(unsigned char eOIStype, DWORD& iFirst, DWORD& iSecond, DWORD& iThird,
                               DWORD& iFourth);
    /// MFLO_RST_OIS_PLP_STAT resets those counters.
    bool MFLO_RST_OIS_PLP_STAT(unsigned char eOIStype);

    /// MFLO_GET_FLO_PLP_DYN_PARAMS: a flow's good and erased packets, in total and in the present
    /// super-frame. All are written, or none.
    bool MFLO_GET_FLO_PLP_DYN_PARAMS(DWORD iFlowID, unsigned short& iTotalGoodPlps,
                                     unsigned short& iTotalErasures, unsigned short& iSuperFrameGoodPlps,
                                     unsigned short& iSuperFrameErasures);

private:
    bool SendForChannel(const char* sMethod, unsigned char iCommandId, unsigned char iMlcID,
                        unsigned char eSystem);
    template <class Record>
    bool TakeRecord(Record* pRecord);

    CommandFrame& m_frame;
};
