// The 32-bit values that interfaces call `unsigned long` and `long`.
#pragma once

#include <type_traits>

/// An unsigned value of exactly 32 bits: `unsigned long` where that has 32 bits (Windows, whose own
/// headers declare the same type), `unsigned int` elsewhere.
using DWORD = std::conditional_t<sizeof(unsigned long) == 4, unsigned long, unsigned int>;

/// The signed counterpart of DWORD.
using LONG = std::conditional_t<sizeof(long) == 4, long, int>;
