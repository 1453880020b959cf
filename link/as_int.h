// 32-bit values for printf-like formats.
#pragma once

#include "platform/types.h"

/// AsInt gives a 32-bit value the type that "%d" and "%X" take on every system.
constexpr int AsInt(DWORD iValue) {
    return static_cast<int>(iValue);
}
