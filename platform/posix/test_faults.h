// Faults of the system that tests ask for; product code never touches them.
#pragma once

#include <atomic>

/// Each switch makes one call of the platform fail for as long as it is set.
struct TestFaults {
    std::atomic<bool> bOpenIsDenied{false};       // the user may not open the port
    std::atomic<bool> bSetupCommFails{false};     // the driver refuses the buffer sizes
    std::atomic<bool> bNoIntervalTimeouts{false}; // the port cannot do interval time-outs
    std::atomic<bool> bSetCommStateFails{false};  // the driver refuses the line settings
    std::atomic<bool> bContextHandleFails{false}; // no handle can be made
    std::atomic<bool> bWritesStall{false};        // the device takes no byte
};

TestFaults& InjectedFaults();
