// The table of a connection's time-outs, and its values at first.
#pragma once

#include <array>

#include "link/time_outs.h"
#include "platform/types.h"

/// The number of time-outs.
constexpr int kTimeOutCount = 7;

/// Their values before anybody changes them, in ms.
inline constexpr std::array<DWORD, kTimeOutCount> kDefaultTimeOuts = {4000, 80,    200,  1000,
                                                                      6000, 10000, 10000};

/// IsTimeOutId tells whether there is a time-out of that number.
constexpr bool IsTimeOutId(QMSL_TimeOutType_Enum eTimeOutId) {
    return eTimeOutId >= 0 && eTimeOutId < kTimeOutCount;
}
