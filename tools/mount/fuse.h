// libfuse 3, the one library that this program needs beside our own.
#pragma once

#define FUSE_USE_VERSION 312
#include <fuse.h>
#include <fuse_lowlevel.h>
