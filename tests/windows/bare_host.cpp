// A host without the compiler's run-time libraries.
#include "tests/windows/flat_calls.h"

extern "C" void mainCRTStartup() {
    ExitProcess(static_cast<UINT>(CallFlatFunctions()));
}
