#include "ftm/broadcast_reading.h"

#include "diag/command.h"

namespace {

constexpr size_t kFlowIdSize = 3;

// VisitFields calls the visitor for each field of a record (const or not) in wire order, until it returns
// false. Reading and logging both take the order from here.

template <class Record, class Visitor>
requires requires(Record record) {
    record.FlowID;
}
bool VisitFields(Record& record, Visitor& visit) {
    return visit("FlowID", record.FlowID, kFlowIdSize) && visit("MlcID", record.MlcID) &&
           visit("StreamID", record.StreamID) && visit("StreamUsesBothLayers", record.StreamUsesBothLayers) &&
           visit("ByteInterleaveEnabled", record.ByteInterleaveEnabled) &&
           visit("BindingType", record.BindingType) && visit("System", record.System);
}

template <class Record, class Visitor>
requires requires(Record record) {
    record.BasePlpsPreRsGood;
}
bool VisitFields(Record& record, Visitor& visit) {
    return visit("BasePlpsPreRsGood", record.BasePlpsPreRsGood) &&
           visit("BasePlpsPreRsErasures", record.BasePlpsPreRsErasures) &&
           visit("BasePlpsPostRsGood", record.BasePlpsPostRsGood) &&
           visit("BasePlpsPostRsErasures", record.BasePlpsPostRsErasures) &&
           visit("EnhPlpsPreRsGood", record.EnhPlpsPreRsGood) &&
           visit("EnhPlpsPreRsErasures", record.EnhPlpsPreRsErasures) &&
           visit("EnhPlpsPostRsGood", record.EnhPlpsPostRsGood) &&
           visit("EnhPlpsPostRsErasures", record.EnhPlpsPostRsErasures) &&
           visit("BaseCbsPreRsGood", record.BaseCbsPreRsGood) &&
           visit("BaseCbsPreRsErasures", record.BaseCbsPreRsErasures) &&
           visit("BaseCbsPostRsGood", record.BaseCbsPostRsGood) &&
           visit("BaseCbsPostRsErasures", record.BaseCbsPostRsErasures) &&
           visit("EnhCbsPreRsGood", record.EnhCbsPreRsGood) &&
           visit("EnhCbsPreRsErasures", record.EnhCbsPreRsErasures) &&
           visit("EnhCbsPostRsGood", record.EnhCbsPostRsGood) &&
           visit("EnhCbsPostRsErasures", record.EnhCbsPostRsErasures);
}

template <class Record, class Visitor>
requires requires(Record record) {
    record.PlpStats;
}
bool VisitFields(Record& record, Visitor& visit) {
    return visit("Base_FFT_Address", record.Base_FFT_Address) && visit("TransmitMode", record.TransmitMode) &&
           visit("OuterCode", record.OuterCode) && visit("NumCbsInCurrentSF", record.NumCbsInCurrentSF) &&
           VisitFields(record.PlpStats, visit);
}

template <class Record, class Visitor>
requires requires(Record record) {
    record.SymbolOffset;
}
bool VisitFields(Record& record, Visitor& visit) {
    return visit("MlcID", record.MlcID) && visit("BaseFFTaddress", record.BaseFFTaddress) &&
           visit("SymbolOffset", record.SymbolOffset) && visit("StartSlotOffset", record.StartSlotOffset) &&
           visit("MinSlot", record.MinSlot) && visit("MaxSlot", record.MaxSlot) &&
           visit("NumSlots", record.NumSlots) && visit("NumCodeBlocks", record.NumCodeBlocks);
}

} // namespace

template <class Record>
bool RecordReader::Read(Record& record) {
    Record read{};
    size_t iOffset = m_iOffset;
    auto take = [&]<class T>(const char*, T& iValue, size_t iWidth = sizeof(T)) {
        DWORD iNumber = 0;
        for (size_t i = 0; i < iWidth; ++i) {
            unsigned char iByte = 0;
            if (!m_response.U8At(iOffset++, iByte))
                return false;
            iNumber |= static_cast<DWORD>(iByte) << 8 * i;
        }
        iValue = static_cast<T>(iNumber);
        return true;
    };
    if (!VisitFields(read, take))
        return false;
    record = read;
    m_iOffset = iOffset;
    return true;
}

template <class Record>
void LogRecord(DataLogFileHandler& log, const Record& record) {
    auto write = [&](const char* sName, DWORD iValue, size_t = 0) {
        LogLine(log, LOG_RET, "\t\t\t %s = %d", sName, iValue);
        return true;
    };
    VisitFields(record, write);
}

template bool RecordReader::Read(mftypes_active_flow_info&);
template bool RecordReader::Read(mftypes_mlc_plp_stats_type&);
template bool RecordReader::Read(mftypes_active_mlc_info&);
template bool RecordReader::Read(mftypes_mlc_dyn_params_type&);
template void LogRecord(DataLogFileHandler&, const mftypes_active_flow_info&);
template void LogRecord(DataLogFileHandler&, const mftypes_mlc_plp_stats_type&);
template void LogRecord(DataLogFileHandler&, const mftypes_active_mlc_info&);
template void LogRecord(DataLogFileHandler&, const mftypes_mlc_dyn_params_type&);
