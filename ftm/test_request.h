// The requests of the radio tests, and the phone's status in the response.
#pragma once

#include "ftm/ftm_command.h"

/// A test request is the FTM header of its mode, the request's id, two 16-bit zeros, and fields. The exchange
/// succeeds with any response of the command type that has a status. The caller checks whether the phone
/// accepted the request (status 0). Its effect is reported later, in a log record.

/// What the requests of a test have in common: their mode, and the offset of the status in the responses.
struct TestForm {
    FTM_Mode_Id_Enum eMode;
    size_t iStatusOffset;
};
constexpr TestForm kGsmTest{FTM_MODE_ID_GSM_BER, 10}; // EGPRS too
constexpr TestForm kWcdmaTest{FTM_MODE_ID_WCDMA_BER, 10};
constexpr TestForm kHsdpaTest{FTM_MODE_ID_WCDMA_BER, 11};

/// BeginTest begins a request.
RequestBuilder& BeginTest(CommandFrame& frame, const TestForm& form, unsigned short iId);

/// ExchangeTest exchanges the request within QMSL_TimeOut_SyncRequest and reads iStatus. False, with iStatus
/// 1, when no response arrived or it has no status.
bool ExchangeTest(CommandFrame& frame, const TestForm& form, unsigned char& iStatus);

/// SendTest exchanges a request whose entry line shows all its fields.
template <class... Fields>
bool SendTest(CommandFrame& frame, const TestForm& form, unsigned short iId, unsigned char& iStatus,
              TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, BeginTest(frame, form, iId), entry, fields...);
    return ExchangeTest(frame, form, iStatus);
}

/// SendUnshown does the same for a request whose entry line shows no fields.
template <class... Fields>
bool SendUnshown(CommandFrame& frame, const TestForm& form, unsigned short iId, unsigned char& iStatus,
                 LogText<> entry, Fields... fields) {
    LogLine(frame, LOG_FN, entry);
    AppendFields(BeginTest(frame, form, iId), fields...);
    return ExchangeTest(frame, form, iStatus);
}
