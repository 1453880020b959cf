// Shared by many commands: requests of fixed bytes, responses with one value at their end.
#pragma once

#include <cstddef>
#include <initializer_list>

#include "diag/command.h"

/// SimpleCommand logs sEntry under LOG_FN, sends the given bytes and waits for the response, which is then in
/// the frame's buffer pair. True when it arrived.
bool SimpleCommand(CommandFrame& frame, const char* sEntry, std::initializer_list<unsigned char> request);

/// SimpleQuery does the same for a command whose result is only in the response's values. The response's
/// header is the request's bytes and iReserved more (see CommandFrame::SendForValues).
bool SimpleQuery(CommandFrame& frame, const char* sEntry, std::initializer_list<unsigned char> request,
                 size_t iReserved = 0);

/// TakeLast takes the last field of a response. False, with iValue unchanged, when the field overlaps the
/// header.
template <class T>
bool TakeLast(CommandFrame& frame, T& iValue) {
    ResponseReader response = frame.Response();
    return response.HoldsValues(sizeof iValue) && response.Take(iValue);
}
