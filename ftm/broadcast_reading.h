// Reading the broadcast records from a response, and logging them.
#pragma once

#include <cstddef>

#include "diag/packet.h"
#include "ftm/broadcast_records.h"

class DataLogFileHandler;

/// RecordReader reads records of an answer one after the other, from iOffset on.
class RecordReader {
public:
    RecordReader(const ResponseReader& response, size_t iOffset) : m_response(response), m_iOffset(iOffset) {}

    /// Read fills one of the records above. False, with the record as it was, when the answer ends before it
    /// does.
    template <class Record>
    bool Read(Record& record);

private:
    const ResponseReader& m_response;
    size_t m_iOffset;
};

/// LogRecord writes the fields of one of the records above under LOG_RET, one to a line.
template <class Record>
void LogRecord(DataLogFileHandler& log, const Record& record);
