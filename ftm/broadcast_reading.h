// Reading the broadcast records from a response, and logging them.
#pragma once

#include <cstddef>

#include "diag/packet.h"
#include "ftm/broadcast_records.h"

class DataLogFileHandler;

/// RecordReader reads the records of a response one after another, starting at iOffset.
class RecordReader {
public:
    RecordReader(const ResponseReader& response, size_t iOffset) : m_response(response), m_iOffset(iOffset) {}

    /// Read fills a record of broadcast_records.h. False, with the record unchanged, when the response is too
    /// short.
    template <class Record>
    bool Read(Record& record);

private:
    const ResponseReader& m_response;
    size_t m_iOffset;
};

/// LogRecord logs the fields of a record under LOG_RET, one per line.
template <class Record>
void LogRecord(DataLogFileHandler& log, const Record& record);
