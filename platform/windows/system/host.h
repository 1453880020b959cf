// The file manager's plug-in interface on this system.
#pragma once

#include "system/serial.h"

/// The calling convention of entry points and host callbacks.
#define HOST_CALL __stdcall

/// The bits of a BOOL argument that the host sets: all of them.
constexpr int kHostFlagMask = -1;

/// Making an existing folder returns the operation's own result.
constexpr bool kExistingFolderCountsAsMade = false;

/// The host makes path buffers for each call: the phone's form of a path overwrites the host's.
constexpr bool kEntryPointsChangePaths = true;

/// The separator in the host's paths.
constexpr char kHostSeparator = '\\';
