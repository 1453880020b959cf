// Expansion of a printf-style format from outside, with the integers that came with it.
#pragma once

#include <cstddef>
#include <span>

#include "platform/types.h"

/// ExpandFormat expands sFormat with `arguments` into `out` (at least one character), terminated and cut to
/// fit. Returns the length of the written text. Formats need not be trustworthy:
/// - %d %i %u %x %X %o %c %% are expanded, with flags (- + blank # 0), width and precision; '*' uses up an
///   argument. Widths and precisions are limited to 100. Length modifiers (h l j z t L q) are ignored: every
///   argument has 32 bits. An unprintable %c becomes '.'.
/// - %s %p %n and the floating-point conversions refer to data outside the packet (an address in the phone's
///   memory) or to two arguments: the conversion itself is copied to the output, and one argument skipped.
/// - A conversion that is unknown or unfinished, or has no argument left, is also copied.
size_t ExpandFormat(const char* sFormat, std::span<const DWORD> arguments, std::span<char> out);
