// The simulated handset's state, apart from its file system.
#pragma once

#include <string>
#include <utility>

#include "handset/bytes.h"
#include "handset/delayed.h"
#include "handset/memory.h"
#include "handset/nv_items.h"
#include "handset/peripherals.h"
#include "handset/radio_tests.h"
#include "handset/traffic_masks.h"

namespace handset {

/// State without rules of its own: requests set it, tests read it.
struct Service {
    std::string serviceCode = "000000";
    bool isUnlocked = false; // the right code was presented
    bool isFrozen = false;
    bool isDownloading = false;
    uint16_t mode = 0;
    uint8_t status = 3;
    uint16_t switches = 0;
    Bytes errorLog = Bytes(264, 0xE0);
    std::vector<std::pair<uint8_t, uint8_t>> keys; // key and hold, in order
    std::string calledNumber;                      // empty: no call
};

/// No lock of its own.
struct State {
    NvItems nv;
    Memory memory;
    TrafficMasks traffic;
    Delayed delayed;
    Service service;
    Peripherals peripherals;
    RadioTests radio;
};

} // namespace handset
