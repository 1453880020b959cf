// QUILLET_API marks what other programs may use of the library; QUILLET_C_API the same for functions
// that are found by their plain names.
#pragma once

#include <cstdio>

#ifdef _WIN32
#define QUILLET_API __declspec(dllexport)
#else
#define QUILLET_API __attribute__((visibility("default")))
#endif

#define QUILLET_C_API extern "C" QUILLET_API

/// QUILLET_API_INLINE marks an exported operation with its body in the header, which programs compile into
/// themselves: what it throws is thrown in the caller's module.
#define QUILLET_API_INLINE QUILLET_API __attribute__((used)) inline

/// Tells the compiler that argument number iFormat is a printf format for the arguments from number iFirst
/// on (member functions count `this` as number 1).
#ifdef _WIN32
#define QUILLET_PRINTF(iFormat, iFirst) __attribute__((format(__MINGW_PRINTF_FORMAT, iFormat, iFirst)))
#else
#define QUILLET_PRINTF(iFormat, iFirst) __attribute__((format(printf, iFormat, iFirst)))
#endif
