// The broadcast receiver's flows, and the multiplexed logical channels (MLCs) that carry them.
#pragma once

#include "ftm/broadcast_records.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// BroadcastFlows: every command is one request and its response, within QMSL_TimeOut_SyncRequest. The
/// response to a count or list has the count after its header. The entries follow without gaps, laid out as
/// described in broadcast_records.h. Caller's thread. The frame must outlive it.
class QUILLET_API BroadcastFlows {
public:
    explicit BroadcastFlows(CommandFrame& frame) : m_frame(frame) {}

    /// MFLO_ACTIVATE_FLOW, MFLO_DEACTIVATE_FLOW start and end the reception of a flow. Only the low 24 bits
    /// of its id are sent.
    bool MFLO_ACTIVATE_FLOW(DWORD iFlowID, unsigned char eBinding);
    bool MFLO_DEACTIVATE_FLOW(DWORD iFlowID);

    /// MFLO_GET_..._COUNT: false, with the count unchanged, when the response lacks it.
    bool MFLO_GET_BOUND_FLOW_COUNT(unsigned char& piBoundFlowCount);
    bool MFLO_GET_ACTIVE_MLC_COUNT(unsigned char& piActiveMlcCount);

    /// MFLO_GET_..._LIST read the entries.
    ///   iCount  in: the room in pList, in entries; out: how many entries the phone has, also when the result
    ///           is false because entries are missing
    ///   pList   receives all entries, or stays unchanged
    ///
    /// True also when the phone has more entries than there is room for; none is written then. False when the
    /// response lacks the count or an entry.
    bool MFLO_GET_BOUND_FLOW_LIST(unsigned char& iCount, mftypes_active_flow_info* pList);
    bool MFLO_GET_ACTIVE_MLC_LIST(unsigned char& iCount, mftypes_active_mlc_info* pList);

private:
    bool SendForCount(unsigned char iCommandId, unsigned char& iCount);
    template <class Record>
    bool ReadList(unsigned char iCommandId, const char* sArray, unsigned char& iCount, Record* pList);

    CommandFrame& m_frame;
};
