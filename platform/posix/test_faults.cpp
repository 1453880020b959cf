// System failures that tests can inject.
#include "platform/posix/test_faults.h"

TestFaults& InjectedFaults() {
    static TestFaults faults;
    return faults;
}
