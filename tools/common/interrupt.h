// Ctrl-C while something runs that can be stopped in order.
#pragma once

namespace tools {

/// InterruptGuard takes Ctrl-C over while it lives: the first one is only remembered, a second one ends the
/// program at once. They may be nested.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    void (*m_previous)(int);
};

/// Interrupted tells whether Ctrl-C was pressed under an InterruptGuard.
bool Interrupted();

} // namespace tools
