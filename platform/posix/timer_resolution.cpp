// Waits are fine enough here as they are.
#include "platform/timer_resolution.h"

FineTimer::FineTimer() {}
FineTimer::~FineTimer() {}
