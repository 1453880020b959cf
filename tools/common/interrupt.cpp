#include "common/interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace tools {
namespace {

std::atomic<bool> g_isInterrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void OnInterrupt(int) {
    if (g_isInterrupted.exchange(true))
        std::_Exit(1);
    std::signal(SIGINT, OnInterrupt); // some systems remove the handler when they call it
}

} // namespace

InterruptGuard::InterruptGuard() : m_previous(std::signal(SIGINT, OnInterrupt)) {}

InterruptGuard::~InterruptGuard() {
    std::signal(SIGINT, m_previous);
}

bool Interrupted() {
    return g_isInterrupted;
}

} // namespace tools
