// No banner here: hosts give the plug-in no window system.
#include "platform/splash_window.h"

class ShownSplash::Window {};

ShownSplash::ShownSplash() {}
ShownSplash::~ShownSplash() {}

bool ShownSplash::IsOnScreen() const {
    return false;
}
