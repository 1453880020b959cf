// What the file manager's plug-in interface looks like on this system.
#pragma once

#include "system/serial.h"

/// The calling convention of entry points and host callbacks.
#define HOST_CALL __stdcall

/// The bits of a BOOL argument that the host fills: all of them.
constexpr int kHostFlagMask = -1;

/// Making a folder that exists: the operation's own result stands.
constexpr bool kExistingFolderCountsAsMade = false;

/// Paths are buffers made for the call: the phone's form of a path is written over the host's.
constexpr bool kEntryPointsChangePaths = true;

/// The host's separator in paths that it sends and expects back.
constexpr char kHostSeparator = '\\';
