// Faults of the system that tests ask for.
#include "platform/posix/test_faults.h"

TestFaults& InjectedFaults() {
    static TestFaults faults;
    return faults;
}
