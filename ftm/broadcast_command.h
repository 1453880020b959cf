// Shared by the commands of the broadcast receiver.
#pragma once

#include <cstddef>

#include "ftm/ftm_command.h"

/// Requests and responses begin with command type, subsystem and command id.
constexpr size_t kBroadcastHeader = 4;

/// BeginBroadcast begins a request. Each id appears only in the method named after its command.
inline RequestBuilder& BeginBroadcast(CommandFrame& frame, unsigned char iCommandId) {
    return frame.FormatSubsystemDiagHeader(DIAG_SUBSYSTEM_MEDIA_FLO, iCommandId);
}

/// TakeBroadcast is TakeLogged for values that must all follow the header: all are written, or none.
template <class... Values>
bool TakeBroadcast(CommandFrame& frame, TextFor<Values...> result, Values&... values) {
    return frame.Response().Size() >= kBroadcastHeader + (sizeof values + ... + 0) &&
           TakeLogged(frame, result, values...);
}

/// SendBroadcast exchanges a command whose entry line shows all its fields. True when the phone answered.
template <class... Fields>
bool SendBroadcast(CommandFrame& frame, unsigned char iCommandId, TextFor<Fields...> entry,
                   Fields... fields) {
    AppendLogged(frame, BeginBroadcast(frame, iCommandId), entry, fields...);
    return frame.Send(0);
}
