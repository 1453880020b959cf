// Texts from the registry.
#pragma once

#include <algorithm>
#include <string>

#include "system/serial.h"

/// RegistryText returns the text of `iSize` bytes in a buffer of `iCapacity` bytes. A registry value may lack
/// a terminating zero, contain others, or have a wrong size, so the text ends at the first zero, at its size
/// or at the end of the buffer, whichever comes first.
inline std::string RegistryText(const void* pBuffer, DWORD iSize, size_t iCapacity) {
    const char* pText = static_cast<const char*>(pBuffer);
    const char* pEnd = pText + std::min<size_t>(iSize, iCapacity);
    return {pText, std::find(pText, pEnd, '\0')};
}
