// Texts that come out of the registry.
#pragma once

#include <algorithm>
#include <string>

#include "system/serial.h"

/// RegistryText takes a text of `iSize` bytes out of a buffer of `iCapacity` bytes. Nothing guarantees that
/// a registry value ends with a zero, or only there, or that its size is true: the text ends at the first
/// zero, at its size or at the buffer's end, whichever comes first.
inline std::string RegistryText(const void* pBuffer, DWORD iSize, size_t iCapacity) {
    const char* pText = static_cast<const char*>(pBuffer);
    const char* pEnd = pText + std::min<size_t>(iSize, iCapacity);
    return {pText, std::find(pText, pEnd, '\0')};
}
