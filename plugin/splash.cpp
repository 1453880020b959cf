#include "plugin/splash.h"

#include <thread>

void Splash::Hold(std::chrono::milliseconds time) const {
    if (m_shown.IsOnScreen())
        std::this_thread::sleep_for(time);
}
