// The requests of the radio tests: their frame, and the phone's status in the answer.
#pragma once

#include "ftm/ftm_command.h"

/// A test request is FTM header of its mode, the request's id, two 16-bit zeros, fields. Any answer of the
/// command type that has a status counts as an exchange that worked; whether the phone accepted the request
/// (status 0) is the caller's to look at. What the request brings about comes later, as a log record.

/// What the requests of a test have in common: their mode, and the offset of the status in their answers.
struct TestForm {
    FTM_Mode_Id_Enum eMode;
    size_t iStatusOffset;
};
constexpr TestForm kGsmTest{FTM_MODE_ID_GSM_BER, 10}; // EGPRS too
constexpr TestForm kWcdmaTest{FTM_MODE_ID_WCDMA_BER, 10};
constexpr TestForm kHsdpaTest{FTM_MODE_ID_WCDMA_BER, 11};

/// BeginTest begins a request.
RequestBuilder& BeginTest(CommandFrame& frame, const TestForm& form, unsigned short iId);

/// ExchangeTest exchanges the request that was begun, within QMSL_TimeOut_SyncRequest. iStatus is the status.
/// False, with iStatus 1, when no answer came or it ends before its status.
bool ExchangeTest(CommandFrame& frame, const TestForm& form, unsigned char& iStatus);

/// SendTest exchanges a request whose fields are what its entry line shows.
template <class... Fields>
bool SendTest(CommandFrame& frame, const TestForm& form, unsigned short iId, unsigned char& iStatus,
              TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, BeginTest(frame, form, iId), entry, fields...);
    return ExchangeTest(frame, form, iStatus);
}

/// SendUnshown does so for a request whose entry line shows none of its fields.
template <class... Fields>
bool SendUnshown(CommandFrame& frame, const TestForm& form, unsigned short iId, unsigned char& iStatus,
                 LogText<> entry, Fields... fields) {
    LogLine(frame, LOG_FN, entry);
    AppendFields(BeginTest(frame, form, iId), fields...);
    return ExchangeTest(frame, form, iStatus);
}
