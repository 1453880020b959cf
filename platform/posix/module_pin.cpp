// Unloading needs no care here.
#include "platform/module_pin.h"

ModulePin::ModulePin() {}
ModulePin::~ModulePin() {}

void ReleaseUnneededPins() {}

bool ProcessIsEnding() {
    return false;
}
