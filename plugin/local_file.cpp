#include "plugin/local_file.h"

#include <cstdint>
#include <exception>
#include <filesystem>
#include <system_error>

bool LocalFileExists(const char* sPath) {
    try {
        std::error_code error;
        return std::filesystem::exists(sPath, error);
    } catch (const std::exception&) {
        return true;
    }
}

std::optional<DWORD> LocalFileSize(const char* sPath) {
    try {
        std::error_code error;
        const std::uintmax_t iSize = std::filesystem::file_size(sPath, error);
        if (error || iSize > UINT32_MAX)
            return {};
        return static_cast<DWORD>(iSize);
    } catch (const std::exception&) {
        return {};
    }
}
