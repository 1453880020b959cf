// The callback for the entries of a directory of the phone.
#pragma once

#include "platform/types.h"

/// Called with each entry of a listed directory: full path, kind (1 file, 0 directory, 2 link), mask, buffer
/// option and clean flag (these three are 0 for EFS2), date (the phone's change time), size in bytes, user
/// data. Runs on the caller's thread, inside the enumeration. The result is ignored.
using EfsDirectoryCallBack = unsigned char (*)(char* const sName, unsigned char isFile, unsigned short Mask,
                                               unsigned char BufOption, unsigned char Clean, DWORD Date,
                                               DWORD FileSize, void* pUserData);
