#include "platform/local_files.h"

#include <sys/stat.h>

#include <cstdint>

bool LocalFileExists(const char* sPath) {
    struct stat status {};
    return stat(sPath, &status) == 0;
}

std::optional<DWORD> LocalFileSize(const char* sPath) {
    struct stat status {};
    if (stat(sPath, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > INT64_C(0xFFFFFFFF))
        return {};
    return static_cast<DWORD>(status.st_size);
}
