// The table of a connection's time-outs and their defaults.
#pragma once

#include <array>

#include "link/time_outs.h"
#include "platform/types.h"

/// The number of time-outs.
constexpr int kTimeOutCount = 7;

/// Their defaults, in ms.
inline constexpr std::array<DWORD, kTimeOutCount> kDefaultTimeOuts = {4000, 80,    200,  1000,
                                                                      6000, 10000, 10000};

/// IsTimeOutId returns whether a number is that of a time-out.
constexpr bool IsTimeOutId(QMSL_TimeOutType_Enum eTimeOutId) {
    return eTimeOutId >= 0 && eTimeOutId < kTimeOutCount;
}
