// The log records of the radio tests: what each kind reports and where it is stored.
#pragma once

#include <span>

#include "link/radio_test_blocks.h"

struct RadioTestBlocks;

class DataLogFileHandler;

/// FindTestRecord returns the test record (type in 16 bits, id, values) inside a packet (without its FCS)
/// that is the log record of a radio test. Empty for other packets, unknown ids, and records that end before
/// their values: a truncated confirmation must not be taken for one with status 0.
std::span<const unsigned char> FindTestRecord(std::span<const unsigned char> packet);

/// LogTestRecord logs the name and values of a record from FindTestRecord, under LOG_ASYNC.
void LogTestRecord(std::span<const unsigned char> record, DataLogFileHandler& log);

/// StoreTestRecord stores such a record in the block of its test.
void StoreTestRecord(std::span<const unsigned char> record, RadioTestBlocks& blocks);

/// Return the names of GSM, WCDMA and EGPRS records; null for an id without one.
const char* TestRecordName(log_FTM2_GSM_BER_log_id_enum eId);
const char* TestRecordName(log_FTM2_WCDMA_BER_log_id_enum eId);
const char* TestRecordName(log_FTM2_EGPRS_BER_log_id_enum eId);
