// The names of the events that a phone reports.
#pragma once

#include <cstddef>

#include "platform/export.h"

/// Room for any name with its terminating zero.
constexpr size_t kEventTextSize = 64;

/// GetEventText copies the name of an event id to sOut (at least kEventTextSize characters), or
/// "EVENT_NOT_FOUND" for an unknown id. True when the id has a name.
QUILLET_API bool GetEventText(int iEventId, char* sOut);
