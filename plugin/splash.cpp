#include "plugin/splash.h"

#include <thread>

void Splash::Hold(std::chrono::milliseconds time) const {
    std::this_thread::sleep_for(time);
}
