// File times of the phone.
#pragma once

#include "platform/types.h"

/// Returns iTime (seconds since 1970, UTC), or 0 from 2^31 on, which hosts cannot show.
constexpr DWORD CalendarTime(DWORD iTime) {
    return iTime < 0x80000000 ? iTime : 0;
}
