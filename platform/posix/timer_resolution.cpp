// Waits on Linux are precise already.
#include "platform/timer_resolution.h"

FineTimer::FineTimer() {}
FineTimer::~FineTimer() {}
