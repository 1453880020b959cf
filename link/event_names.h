// The names of the events that a phone reports.
#pragma once

#include <cstddef>

#include "platform/export.h"

/// The longest name, with its terminating zero, is shorter than this.
constexpr size_t kEventTextSize = 64;

/// GetEventText copies the name of an event id into sOut (at least kEventTextSize characters), or
/// "EVENT_NOT_FOUND" for an id that no phone of this family reports. True when the id has a name.
QUILLET_API bool GetEventText(int iEventId, char* sOut);
