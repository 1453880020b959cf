// Shared by the factory-test commands: requests, logging, and taking values from the response.
#pragma once

#include "diag/command.h"

/// A factory-test command logs its entry line, begins a request (with BeginFtm, or with a Format function of
/// CommandFrame when its family has a header of its own), appends its fields, sends, and takes its values.
/// Most commands that take values also send them as placeholders, filled with the caller's values, because
/// the response has the request's layout.
///
/// Out-values change only when a response arrived that the Send function accepts and that continues after its
/// header. They are taken from the response's end without checking for the header, so header bytes of a
/// truncated response may be returned. A value with too few bytes left stays unchanged and makes the result
/// false; when no bytes are left, reading starts at the response's end again. The result line is logged in
/// any case.

/// BeginFtm begins a request of an RF command: FTM header for the current command type and system mode, then
/// the command's id, which appears only in the method named after the command.
RequestBuilder& BeginFtm(CommandFrame& frame, unsigned short iCommandId);

/// SendFtm exchanges an RF command whose entry line shows all its fields. True when SendFtmCmd accepted the
/// response; the caller then takes the values, if any.
template <class... Fields>
bool SendFtm(CommandFrame& frame, unsigned short iCommandId, TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, BeginFtm(frame, iCommandId), entry, fields...);
    return frame.SendFtmCmd();
}
