// libfuse 3, the only library that this program needs besides our own.
#pragma once

#define FUSE_USE_VERSION 312
#include <fuse.h>
#include <fuse_lowlevel.h>
