// What the file manager's plug-in interface looks like on this system.
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

/// The published find-data record. The host's own has a longer name field; the published one fits in it.
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

/// The bits of a BOOL argument that the host fills: it passes one byte, the rest is garbage.
constexpr int kHostFlagMask = 0xFF;

/// Making a folder that exists: the host takes FALSE for a failure and skips the folder's content.
constexpr bool kExistingFolderCountsAsMade = true;

/// Paths are texts of the host's own, some of them shared by all of its parts: they stay as they came.
constexpr bool kEntryPointsChangePaths = false;

/// The host's separator in paths that it sends and expects back.
constexpr char kHostSeparator = '/';
