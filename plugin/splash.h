// The banner at the start.
#pragma once

#include <chrono>

#include "platform/splash_window.h"

/// Splash shows the banner while it exists. It is used by one thread, which need not own the connection.
class Splash {
public:
    /// Lets the calling thread sleep so that the user sees the banner. Returns at once when none is shown.
    void Hold(std::chrono::milliseconds time) const;

private:
    ShownSplash m_shown;
};
