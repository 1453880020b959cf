// The file manager's plug-in interface on this system.
#pragma once

#include <cstdint>

#include "platform/types.h"

/// The calling convention of entry points and host callbacks.
#define HOST_CALL

using BOOL = int;
using WORD = uint16_t;
using HANDLE = void*;
using HWND = void*;

constexpr int MAX_PATH = 260;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

/// The published find-data record. The host's has a longer name field, so the published one fits in it.
struct WIN32_FIND_DATAA {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    char cFileName[MAX_PATH];
    char cAlternateFileName[14];
};

/// The bits of a BOOL argument that the host sets: it passes one byte, the rest is undefined.
constexpr int kHostFlagMask = 0xFF;

/// Making an existing folder succeeds: the host takes FALSE for a failure and skips the folder's content.
constexpr bool kExistingFolderCountsAsMade = true;

/// Paths belong to the host, which shares some among its parts: they are not changed.
constexpr bool kEntryPointsChangePaths = false;

/// The separator in the host's paths.
constexpr char kHostSeparator = '/';
