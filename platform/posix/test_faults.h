// System failures that tests can inject; product code never sets them.
#pragma once

#include <atomic>

/// Each switch makes one call of the platform fail while it is set.
struct TestFaults {
    std::atomic<bool> bOpenIsDenied{false};       // the user may not open the port
    std::atomic<bool> bSetupCommFails{false};     // the driver refuses the buffer sizes
    std::atomic<bool> bNoIntervalTimeouts{false}; // the port has no interval time-outs
    std::atomic<bool> bSetCommStateFails{false};  // the driver refuses the line settings
    std::atomic<bool> bContextHandleFails{false}; // no handle can be created
    std::atomic<bool> bWritesStall{false};        // the device accepts no bytes
};

TestFaults& InjectedFaults();
