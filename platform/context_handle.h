// The identity of a library context.
#pragma once

/// MakeContextHandle returns a non-null value that is unique among the live handles of this process: on
/// Windows the handle of a mutex with that name, on Linux an object. Null when the system refuses. The caller
/// releases it with ReleaseContextHandle.
void* MakeContextHandle(const char* sName);

/// ReleaseContextHandle releases a handle; nullptr is ignored. Any thread may call it.
void ReleaseContextHandle(void* hContext);
