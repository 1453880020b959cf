// What the factory-test commands share: how a request begins, how values are taken from an answer.
#pragma once

#include "diag/command_frame.h"

/// A factory-test command is a few lines: it logs its entry line, begins a request (with BeginFtm, or with
/// one of CommandFrame's Format functions where the family has a header of its own), appends its fields,
/// sends, and takes its values. What a command takes out of an answer it has also sent as placeholders,
/// filled with the caller's values, because the handset answers in the request's layout.
///
/// Out-values change only when an answer came that its send variant accepts. They are taken from the answer's
/// end; how far it reaches back into its header is not looked at, so in an answer that stops early the last
/// bytes that there are pass for the values. A value for which there are too few bytes stays as it was and
/// makes the result false; the result line is logged all the same.

/// BeginFtm begins a request of an RF command: FTM header for the current command type and system mode, then
/// the command's id, which stands in the method that is named after the command and nowhere else.
RequestBuilder& BeginFtm(CommandFrame& frame, unsigned short iCommandId);

/// TakeValues takes values from the end of the answer, in the order of the arguments (the layout's last field
/// first). It stops with false at the first one that is not there; the ones before it stay written.
template <class... Values>
bool TakeValues(CommandFrame& frame, Values&... values) {
    [[maybe_unused]] ResponseReader response = frame.Response();
    return (response.Take(values) && ...);
}
