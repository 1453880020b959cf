// The banner that greets the user.
#pragma once

#include <chrono>

#include "platform/splash_window.h"

/// Splash is the banner, shown while it lives. Its thread alone uses it, and need not own the connection.
class Splash {
public:
    /// Hold lets the calling thread sleep, so that the user sees the banner; where none shows, it does not.
    void Hold(std::chrono::milliseconds time) const;

private:
    ShownSplash m_shown;
};
