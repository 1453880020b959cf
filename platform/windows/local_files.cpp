#include "platform/local_files.h"

#include "system/serial.h"

bool LocalFileExists(const char* sPath) {
    return GetFileAttributesA(sPath) != INVALID_FILE_ATTRIBUTES;
}

std::optional<DWORD> LocalFileSize(const char* sPath) {
    WIN32_FILE_ATTRIBUTE_DATA attributes{};
    const bool bFound = GetFileAttributesExA(sPath, GetFileExInfoStandard, &attributes) != FALSE;
    if (!bFound || (attributes.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
        attributes.nFileSizeHigh != 0)
        return {};
    return attributes.nFileSizeLow;
}
