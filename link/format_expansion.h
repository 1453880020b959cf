// Expanding a printf-style format that came from outside, with the integers that came with it.
#pragma once

#include <cstddef>
#include <span>

#include "platform/types.h"

/// ExpandFormat writes sFormat, expanded with `arguments`, into `out` (at least one character), always
/// terminated and cut to what fits; it returns the length of the written text. It is made for formats that
/// nobody vouches for:
/// - %d %i %u %x %X %o %c %% are expanded, with flags (- + blank # 0), width and precision; '*' takes an
///   argument. Widths and precisions count up to 100. Length modifiers (h l j z t L q) are skipped: every
///   argument has 32 bits. An unprintable %c is '.'.
/// - %s %p %n and the floating-point conversions stand for something that is not in the packet (their
///   argument is an address in the phone's memory, or spread over two): the conversion's own text is
///   written, and one argument passed over.
/// - So does a conversion without an argument left, an unknown or an unfinished one: it stands as it is.
size_t ExpandFormat(const char* sFormat, std::span<const DWORD> arguments, std::span<char> out);
