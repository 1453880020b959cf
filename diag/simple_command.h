// What many commands share: requests without anything to build, answers with one value at their end.
#pragma once

#include <initializer_list>

#include "diag/command_frame.h"

/// SimpleCommand logs sEntry under LOG_FN, sends the given bytes and waits for their answer, which is then in
/// the frame's buffer pair. True when it came.
bool SimpleCommand(CommandFrame& frame, const char* sEntry, std::initializer_list<unsigned char> request);

/// TakeLast takes an answer's last field. False, with iValue as it was, when the answer ends before it: the
/// iHead bytes with which answers to that command begin are no values.
template <class T>
bool TakeLast(CommandFrame& frame, size_t iHead, T& iValue) {
    ResponseReader response = frame.Response();
    return response.Size() >= iHead + sizeof iValue && response.Take(iValue);
}
