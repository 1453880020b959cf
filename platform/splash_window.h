// The banner of the plug-in on the screen.
#pragma once

#include <memory>

/// ShownSplash is the banner with the version text on the screen, for as long as it lives. It is painted once
/// and needs no message loop: the thread that made it may sleep. On Linux there is none, and nothing is shown
/// where the system refuses a window or the module has no picture. Made and destroyed by one thread. While
/// one shows, a further one is not shown.
class ShownSplash {
public:
    ShownSplash();
    ~ShownSplash();
    ShownSplash(const ShownSplash&) = delete;
    ShownSplash& operator=(const ShownSplash&) = delete;

    /// IsOnScreen is false when there is nothing to be seen.
    bool IsOnScreen() const;

private:
    class Window;
    std::unique_ptr<Window> m_pWindow;
};
