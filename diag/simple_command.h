// What many commands share: requests without anything to build, answers with one value at their end.
#pragma once

#include <cstddef>
#include <initializer_list>

#include "diag/command.h"

/// SimpleCommand logs sEntry under LOG_FN, sends the given bytes and waits for their answer, which is then in
/// the frame's buffer pair. True when it came.
bool SimpleCommand(CommandFrame& frame, const char* sEntry, std::initializer_list<unsigned char> request);

/// SimpleQuestion is the same for a command whose only news is in the values of the answer, which begins with
/// the request's bytes and iReserved more (see CommandFrame::AskForValues).
bool SimpleQuestion(CommandFrame& frame, const char* sEntry, std::initializer_list<unsigned char> request,
                    size_t iReserved = 0);

/// TakeLast takes an answer's last field. False, with iValue as it was, when it does not lie behind the
/// header as a whole.
template <class T>
bool TakeLast(CommandFrame& frame, T& iValue) {
    ResponseReader response = frame.Response();
    return response.HoldsValues(sizeof iValue) && response.Take(iValue);
}
