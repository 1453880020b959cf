// What the factory-test commands share: how a request begins, how it is filled, logged and its answer taken.
#pragma once

#include "diag/command.h"

/// A factory-test command is a few lines: it logs its entry line, begins a request (with BeginFtm, or with
/// one of CommandFrame's Format functions where the family has a header of its own), appends its fields,
/// sends, and takes its values. What a command takes out of an answer it has mostly sent as placeholders too,
/// filled with the caller's values, because the handset answers in the request's layout.
///
/// Out-values change only when an answer came that its send variant accepts and that goes on after its
/// header. They are taken from the answer's end; how far back that reaches is not looked at, so in an answer
/// that stops between its values the last bytes that there are pass for them. A value for which there are
/// some bytes but too few stays as it was and makes the result false; where none are left, taking begins at
/// the answer's end once more. The result line is logged all the same.

/// BeginFtm begins a request of an RF command: FTM header for the current command type and system mode, then
/// the command's id, which stands in the method that is named after the command and nowhere else.
RequestBuilder& BeginFtm(CommandFrame& frame, unsigned short iCommandId);

/// SendFtm exchanges an RF command whose fields are what its entry line shows. True when it was answered as
/// SendFtmCmd wants it; the values, if any, are still to be taken.
template <class... Fields>
bool SendFtm(CommandFrame& frame, unsigned short iCommandId, TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, BeginFtm(frame, iCommandId), entry, fields...);
    return frame.SendFtmCmd();
}
