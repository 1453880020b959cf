// The identity of a library context.
#pragma once

/// MakeContextHandle returns a non-null value that is unique among the live handles of this process (on
/// Windows the handle of a mutex of that name, on Linux an object of its own); nullptr when the system
/// refuses. The caller gives it back with ReleaseContextHandle.
void* MakeContextHandle(const char* sName);

/// ReleaseContextHandle gives a handle back; nullptr is ignored. Any thread may call it.
void ReleaseContextHandle(void* hContext);
