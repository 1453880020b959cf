// 32-bit values for printf-like formats.
#pragma once

#include "platform/types.h"

/// AsInt converts a 32-bit value to the type that "%d" and "%X" expect on every system.
constexpr int AsInt(DWORD iValue) {
    return static_cast<int>(iValue);
}
