// Ctrl-C while something runs that can be stopped in an orderly way.
#pragma once

namespace tools {

/// While an InterruptGuard lives, the first Ctrl-C is only remembered; a second one ends the program at once.
/// Guards may be nested.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    void (*m_previous)(int);
};

/// Interrupted says whether Ctrl-C was pressed under an InterruptGuard.
bool Interrupted();

} // namespace tools
