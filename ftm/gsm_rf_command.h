// Shared by the commands of the GSM radio.
#pragma once

#include "ftm/ftm_command.h"

/// BeginGsmRf begins a request; the GSM layout has 16 spare bits after the command id.
inline RequestBuilder& BeginGsmRf(CommandFrame& frame, unsigned short iCommandId) {
    return BeginFtm(frame, iCommandId).U16(0).EndHeader();
}

/// SendGsmRf exchanges a setting whose entry line shows all its fields. Any response of the command type is
/// accepted.
template <class... Fields>
bool SendGsmRf(CommandFrame& frame, unsigned short iCommandId, TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, BeginGsmRf(frame, iCommandId), entry, fields...);
    return frame.Send(0);
}

/// CalibrateGsmRf exchanges a calibration. Its response must have the current system mode.
template <class... Fields>
bool CalibrateGsmRf(CommandFrame& frame, unsigned short iCommandId, TextFor<Fields...> entry,
                    Fields... fields) {
    AppendLogged(frame, BeginGsmRf(frame, iCommandId), entry, fields...);
    return frame.SendFtmCmd();
}
