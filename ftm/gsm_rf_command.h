// What the commands of the GSM radio share.
#pragma once

#include "ftm/ftm_command.h"

/// BeginGsmRf begins a request; the GSM layout has 16 spare bits after the command id.
inline RequestBuilder& BeginGsmRf(CommandFrame& frame, unsigned short iCommandId) {
    return BeginFtm(frame, iCommandId).U16(0);
}

/// SendGsmRf exchanges a setting whose entry line shows its fields; any response of the command type will do.
template <class... Fields>
bool SendGsmRf(CommandFrame& frame, unsigned short iCommandId, TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, BeginGsmRf(frame, iCommandId), entry, fields...);
    return frame.Send(0);
}

/// CalibrateGsmRf exchanges a calibration; its response must name the current system mode.
template <class... Fields>
bool CalibrateGsmRf(CommandFrame& frame, unsigned short iCommandId, TextFor<Fields...> entry,
                    Fields... fields) {
    AppendLogged(frame, BeginGsmRf(frame, iCommandId), entry, fields...);
    return frame.SendFtmCmd();
}
