// The requests of the radio tests: their frame, and the phone's status in the answer.
#pragma once

#include "ftm/ftm_command.h"

/// A test request is FTM header of its mode (FTM_MODE_ID_GSM_BER or FTM_MODE_ID_WCDMA_BER), the request's id,
/// two 16-bit zeros, fields. Any answer of the command type counts as an exchange that worked; whether the
/// phone accepted the request (status 0) is the caller's to look at. What the request brings about comes
/// later, as a log record.

/// BeginTest begins a request.
RequestBuilder& BeginTest(CommandFrame& frame, FTM_Mode_Id_Enum eMode, unsigned short iId);

/// Where an answer holds its status.
enum class StatusAt : unsigned char { Byte10 = 10, Byte11 = 11 };

/// ExchangeTest exchanges the request that was begun, within QMSL_TimeOut_SyncRequest. iStatus is the status;
/// in an answer that ends before it, the last byte that there is; 1 when no answer came.
bool ExchangeTest(CommandFrame& frame, StatusAt eStatusAt, unsigned char& iStatus);
