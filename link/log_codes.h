// Log records: where their fields are, and the codes and types that the library knows.
#pragma once

#include <cstddef>

/// Offsets in a log record, counted from its command code.
constexpr size_t kRecordLengthOffset = 2;
constexpr size_t kRecordLogCodeOffset = 6;
/// The log type in a record of the log code kFtmLogCode.
constexpr size_t kFtmLogTypeOffset = 16;

/// The log code of the records in which running factory tests report.
constexpr unsigned short kFtmLogCode = 0x117C;

/// The log types of those records.
enum FtmLogType : unsigned short {
    kPrintfLogType = 0,
    kOldBluetoothLogType = 1,
    kGsmCalibrationLogType = 10,
    kAgcLogType = 0x1004,
    kGsmLogType = 0x1005,
    kWcdmaLogType = 0x1006,
    kBluetoothLogType = 0x1007,
};
