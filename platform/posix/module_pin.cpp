// Unloading is safe on Linux.
#include "platform/module_pin.h"

ModulePin::ModulePin() {}
ModulePin::~ModulePin() {
    static_cast<void>(m_bForGood);
}

void ReleaseUnneededPins() {}

bool ProcessIsEnding() {
    return false;
}
