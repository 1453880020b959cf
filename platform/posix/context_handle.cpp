// The identity of a library context: an allocated object.
#include "platform/context_handle.h"

#include <new>

#include "platform/posix/test_faults.h"

namespace {

struct ContextIdentity {};

} // namespace

void* MakeContextHandle(const char*) {
    return InjectedFaults().bContextHandleFails ? nullptr : new (std::nothrow) ContextIdentity;
}

void ReleaseContextHandle(void* hContext) {
    delete static_cast<ContextIdentity*>(hContext);
}
