#include "ftm/broadcast_flows.h"

#include <algorithm>
#include <vector>

#include "ftm/broadcast_command.h"
#include "ftm/broadcast_reading.h"
#include "ftm/ftm_command.h"

namespace {

RequestBuilder& FlowId(RequestBuilder& request, DWORD iFlowID) {
    return request.U16(iFlowID & 0xFFFF).U8(iFlowID >> 16);
}

} // namespace

bool BroadcastFlows::MFLO_ACTIVATE_FLOW(DWORD iFlowID, unsigned char eBinding) {
    LogLine(m_frame, LOG_FN, "QLIB_MFLO_ACTIVATE_FLOW( iFlowID = %d, eBinding = %d )", iFlowID, eBinding);
    FlowId(BeginBroadcast(m_frame, 9), iFlowID).U8(eBinding);
    return m_frame.Send(0);
}

bool BroadcastFlows::MFLO_DEACTIVATE_FLOW(DWORD iFlowID) {
    LogLine(m_frame, LOG_FN, "QLIB_MFLO_DEACTIVATE_FLOW( iFlowID = %d )", iFlowID);
    FlowId(BeginBroadcast(m_frame, 10), iFlowID);
    return m_frame.Send(0);
}

bool BroadcastFlows::SendForCount(unsigned char iCommandId, unsigned char& iCount) {
    BeginBroadcast(m_frame, iCommandId);
    return m_frame.Send(0) && m_frame.Response().U8At(kBroadcastHeader, iCount);
}

bool BroadcastFlows::MFLO_GET_BOUND_FLOW_COUNT(unsigned char& piBoundFlowCount) {
    LogLine(m_frame, LOG_FN, "QLIB_MFLO_GET_BOUND_FLOW_COUNT( )");
    if (!SendForCount(11, piBoundFlowCount))
        return false;
    LogLine(m_frame, LOG_RET, "QLIB_MFLO_GetBoundFlowCount( piBoundFlowCount = %d )", piBoundFlowCount);
    return true;
}

bool BroadcastFlows::MFLO_GET_ACTIVE_MLC_COUNT(unsigned char& piActiveMlcCount) {
    LogLine(m_frame, LOG_FN, "QLIB_MFLO_GET_ACTIVE_MLC_COUNT( )");
    if (!SendForCount(40, piActiveMlcCount))
        return false;
    LogLine(m_frame, LOG_RET, "QLIB_MFLO_GetActiveMlcCount( piActiveMlcCount = %d )", piActiveMlcCount);
    return true;
}

template <class Record>
bool BroadcastFlows::ReadList(unsigned char iCommandId, const char* sArray, unsigned char& iCount,
                              Record* pList) {
    const unsigned char iCapacity = iCount;
    if (!SendForCount(iCommandId, iCount))
        return false;
    if (iCount > iCapacity)
        return true;
    const ResponseReader response = m_frame.Response();
    RecordReader reader(response, kBroadcastHeader + 1);
    std::vector<Record> entries(iCount);
    if (!std::ranges::all_of(entries, [&](Record& entry) { return reader.Read(entry); }))
        return false;
    std::ranges::copy(entries, pList);
    for (int i = 0; i < iCount; ++i) {
        LogLine(m_frame, LOG_RET, "\t\t %s[%d]", sArray, i);
        LogRecord(m_frame.Log(), pList[i]);
    }
    return true;
}

bool BroadcastFlows::MFLO_GET_BOUND_FLOW_LIST(unsigned char& iCount, mftypes_active_flow_info* pList) {
    LogLine(m_frame, LOG_FN, "QLIB_MFLO_GET_BOUND_FLOW_LIST( iCount = %d )", iCount);
    return ReadList(11, "pActiveFlowInfoArray", iCount, pList);
}

bool BroadcastFlows::MFLO_GET_ACTIVE_MLC_LIST(unsigned char& iCount, mftypes_active_mlc_info* pList) {
    LogLine(m_frame, LOG_FN, "QLIB_MFLO_GET_ACTIVE_MLC_LIST( iCount = %d )", iCount);
    return ReadList(40, "pActiveMlcInfoArray", iCount, pList);
}
