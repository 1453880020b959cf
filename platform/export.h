// QUILLET_API exports a class or function of the library to other programs; QUILLET_C_API also gives a
// function C linkage, so that it is found by its plain name.
#pragma once

#include <cstdio>

#ifdef _WIN32
#define QUILLET_API __declspec(dllexport)
#else
#define QUILLET_API __attribute__((visibility("default")))
#endif

#define QUILLET_C_API extern "C" QUILLET_API

/// QUILLET_API_INLINE marks an exported operation whose body is in the header. Programs compile it into
/// themselves, so that its exceptions are thrown in the caller's module.
#define QUILLET_API_INLINE QUILLET_API __attribute__((used)) inline

/// Declares argument iFormat to be a printf format for the arguments from iFirst on. In member functions,
/// `this` is argument 1.
#ifdef _WIN32
#define QUILLET_PRINTF(iFormat, iFirst) __attribute__((format(__MINGW_PRINTF_FORMAT, iFormat, iFirst)))
#else
#define QUILLET_PRINTF(iFormat, iFirst) __attribute__((format(printf, iFormat, iFirst)))
#endif
