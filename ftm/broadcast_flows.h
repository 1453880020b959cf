// The broadcast receiver's flows, and the multiplexed logical channels (MLCs) that carry them.
#pragma once

#include "ftm/broadcast_records.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// BroadcastFlows: every command is one request and its answer, within QMSL_TimeOut_SyncRequest. An answer to
/// a count or list carries the count behind its header and the entries, one directly after the other (laid
/// out as broadcast_records.h says), behind the count. Caller's thread. The frame must outlive it.
class QUILLET_API BroadcastFlows {
public:
    explicit BroadcastFlows(CommandFrame& frame) : m_frame(frame) {}

    // Of a flow id the low 24 bits are sent.
    bool MFLO_ACTIVATE_FLOW(DWORD iFlowID, unsigned char eBinding);
    bool MFLO_DEACTIVATE_FLOW(DWORD iFlowID);

    /// MFLO_GET_..._COUNT: false, with the count as it was, when the answer ends before it.
    bool MFLO_GET_BOUND_FLOW_COUNT(unsigned char& piBoundFlowCount);
    bool MFLO_GET_ACTIVE_MLC_COUNT(unsigned char& piActiveMlcCount);

    /// MFLO_GET_..._LIST read the entries.
    ///   iCount  in: how many the list has room for; out: how many the handset has, also when the result is
    ///           false because entries are missing. More than there was room for: no entry is written, and
    ///           the result is true.
    ///   pList   is filled with all entries, or left as it was
    /// False when the answer ends before the count or before the last entry.
    bool MFLO_GET_BOUND_FLOW_LIST(unsigned char& iCount, mftypes_active_flow_info* pList);
    bool MFLO_GET_ACTIVE_MLC_LIST(unsigned char& iCount, mftypes_active_mlc_info* pList);

private:
    bool SendForCount(unsigned char iCommandId, unsigned char& iCount);
    template <class Record>
    bool ReadList(unsigned char iCommandId, const char* sArray, unsigned char& iCount, Record* pList);

    CommandFrame& m_frame;
};
