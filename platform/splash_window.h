// The plug-in's splash banner.
#pragma once

#include <memory>

/// ShownSplash shows the banner with the version text for as long as it lives. The banner is painted once and
/// needs no message loop, so its thread may sleep. Nothing is shown on Linux, when the system refuses a
/// window, when the module has no picture, or while another banner is shown. One thread makes and destroys
/// it.
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
