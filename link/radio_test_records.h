// The log records of the radio tests: what each kind says, and where that is kept.
#pragma once

#include <span>

#include "link/radio_test_blocks.h"

struct RadioTestBlocks;

class DataLogFileHandler;

/// FindTestRecord gives the test record inside a packet (without its FCS) that is a log record of a radio
/// test: type (16 bits), id, values. Empty for other packets, unknown ids, and records that end before their
/// values: a confirmation that was cut must not pass for one with a status of 0.
std::span<const unsigned char> FindTestRecord(std::span<const unsigned char> packet);

/// LogTestRecord writes the name and the values of a record that FindTestRecord gave, under LOG_ASYNC.
void LogTestRecord(std::span<const unsigned char> record, DataLogFileHandler& log);

/// StoreTestRecord stores such a record in the block of its test.
void StoreTestRecord(std::span<const unsigned char> record, RadioTestBlocks& blocks);

/// The names of GSM, WCDMA and EGPRS records; null for an id without one.
const char* TestRecordName(log_FTM2_GSM_BER_log_id_enum eId);
const char* TestRecordName(log_FTM2_WCDMA_BER_log_id_enum eId);
const char* TestRecordName(log_FTM2_EGPRS_BER_log_id_enum eId);
