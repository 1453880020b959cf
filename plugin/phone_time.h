// The phone's times of files.
#pragma once

#include "platform/types.h"

/// CalendarTime returns the phone's time, seconds since 1970 (UTC), when its calendar has it; 0, the begin of
/// 1970, for those from 2^31 on, which it has not: hosts give up on worse dates.
constexpr DWORD CalendarTime(DWORD iTime) {
    return iTime < 0x80000000 ? iTime : 0;
}
