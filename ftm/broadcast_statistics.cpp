#include "ftm/broadcast_statistics.h"

#include "ftm/broadcast_command.h"
#include "ftm/broadcast_reading.h"
#include "ftm/ftm_command.h"

bool BroadcastStatistics::SendForChannel(const char* sMethod, unsigned char iCommandId, unsigned char iMlcID,
                                         unsigned char eSystem) {
    LogLine(m_frame, LOG_FN, "QLIB_%s( iMlcID = %d, eSystem = %d )", sMethod, iMlcID, eSystem);
    BeginBroadcast(m_frame, iCommandId).U8(iMlcID).U8(eSystem);
    return m_frame.Send(0);
}

template <class Record>
bool BroadcastStatistics::TakeRecord(Record* pRecord) {
    const ResponseReader response = m_frame.Response();
    if (!RecordReader(response, kBroadcastHeader).Read(*pRecord))
        return false;
    LogRecord(m_frame.Log(), *pRecord);
    return true;
}

bool BroadcastStatistics::MFLO_RST_PLP_STATS(unsigned char bResetAll, unsigned char iMlcId,
                                             unsigned char eSystem) {
    LogLine(m_frame, LOG_FN, "QLIB_MFLO_RST_PLP_STATS( bResetAll = %d, iMlcId = %d, eSystem = %d )",
            bResetAll, iMlcId, eSystem);
    RequestBuilder& request = BeginBroadcast(m_frame, 0);
    if (bResetAll == 0)
        request.U8(iMlcId).U8(eSystem);
    return m_frame.Send(0);
}

bool BroadcastStatistics::MFLO_RST_MLC_PLP_STATS(unsigned char iMlcId, unsigned char eSystem) {
    return SendForChannel("MFLO_RST_MLC_PLP_STATS", 17, iMlcId, eSystem);
}

bool BroadcastStatistics::MFLO_GET_MLC_INFO(unsigned char iMlcID, unsigned char eSystem,
                                            mftypes_active_mlc_info* pMlcInfo) {
    return SendForChannel("MFLO_GET_MLC_INFO", 12, iMlcID, eSystem) && TakeRecord(pMlcInfo);
}

bool BroadcastStatistics::MFLO_GET_MLC_PLP_STAT_DYN_PARAMS(unsigned char iMlcID, unsigned char eSystem,
                                                           mftypes_mlc_plp_stats_type* pPlpStats) {
    return SendForChannel("MFLO_GET_MLC_PLP_STAT_DYN_PARAMS", 14, iMlcID, eSystem) && TakeRecord(pPlpStats);
}

bool BroadcastStatistics::MFLO_GET_MLC_DYN_PARAMS(unsigned char iMlcID, unsigned char eSystem,
                                                  mftypes_mlc_dyn_params_type* pDynParams) {
    return SendForChannel("MFLO_GET_MLC_DYN_PARAMS", 18, iMlcID, eSystem) && TakeRecord(pDynParams);
}

bool BroadcastStatistics::MFLO_GET_OIS_PLP_STAT(unsigned char eOIStype, DWORD& iFirst, DWORD& iSecond,
                                                DWORD& iThird, DWORD& iFourth) {
    return SendBroadcast(m_frame, 21, "QLIB_MFLO_GET_OIS_PLP_STAT( eOIStype = %d )", eOIStype) &&
           TakeBroadcast(m_frame,
                         "QLIB_MFLO_GET_OIS_PLP_STAT( iFirst = %d, iSecond = %d, iThird = %d, iFourth = %d )",
                         iFirst, iSecond, iThird, iFourth);
}

bool BroadcastStatistics::MFLO_RST_OIS_PLP_STAT(unsigned char eOIStype) {
    return SendBroadcast(m_frame, 22, "QLIB_MFLO_RST_OIS_PLP_STAT( eOIStype = %d )", eOIStype);
}

bool BroadcastStatistics::MFLO_GET_FLO_PLP_DYN_PARAMS(DWORD iFlowID, unsigned short& iTotalGoodPlps,
                                                      unsigned short& iTotalErasures,
                                                      unsigned short& iSuperFrameGoodPlps,
                                                      unsigned short& iSuperFrameErasures) {
    constexpr size_t kEnd = kBroadcastHeader + 4 * sizeof iTotalGoodPlps;
    if (!SendBroadcast(m_frame, 43, "QLIB_MFLO_GET_FLO_PLP_DYN_PARAMS( iFlowID = %d )", iFlowID) ||
        m_frame.Response().Size() < kEnd)
        return false;
    m_frame.Response().SetPosition(kEnd);
    return TakeLogged(m_frame,
                      "QLIB_MFLO_GET_FLO_PLP_DYN_PARAMS( iTotalGoodPlps = %d, iTotalErasures = %d, "
                      "iSuperFrameGoodPlps = %d, iSuperFrameErasures = %d )",
                      iTotalGoodPlps, iTotalErasures, iSuperFrameGoodPlps, iSuperFrameErasures);
}
