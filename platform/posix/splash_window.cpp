// No banner on Linux: hosts provide no window system to plug-ins.
#include "platform/splash_window.h"

class ShownSplash::Window {};

ShownSplash::ShownSplash() {}
ShownSplash::~ShownSplash() {}

bool ShownSplash::IsOnScreen() const {
    return false;
}
