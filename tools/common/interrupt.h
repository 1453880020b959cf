// Ctrl-C in commands that stop cleanly.
#pragma once

namespace tools {

/// While an InterruptGuard exists, the first Ctrl-C is only recorded, and a second one ends the program at
/// once. Guards may be nested.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    void (*m_previous)(int);
};

/// Returns true when Ctrl-C was pressed while an InterruptGuard existed.
bool Interrupted();

} // namespace tools
