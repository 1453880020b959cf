// The configurable time-outs of a connection.
#pragma once

#include <array>

#include "platform/types.h"

/// Which time-out: the index into the connection's table.
enum QMSL_TimeOutType_Enum : int {
    QMSL_TimeOut_SyncRequest = 0,      // an ordinary request
    QMSL_TimeOut_PhoneCheck = 1,       // each of the two requests of the phone check
    QMSL_TimeOut_ServerConnect = 2,    // connecting to the port server
    QMSL_TimeOut_StatisticsWait = 3,   // waits for radio-test statistics
    QMSL_TimeOut_DelayedResponse = 4,  // SIM-interface commands with a delayed response
    QMSL_TimeOut_MultipleResponse = 5, // commands that collect several delayed responses
    QMSL_TimeOut_CalibrationSweep = 6, // the RF calibration sweep
};

/// The number of time-outs.
constexpr int kTimeOutCount = 7;

/// Their values before anybody changes them, in ms.
inline constexpr std::array<DWORD, kTimeOutCount> kDefaultTimeOuts = {4000, 80,    200,  1000,
                                                                      6000, 10000, 10000};

/// IsTimeOutId tells whether there is a time-out of that number.
constexpr bool IsTimeOutId(QMSL_TimeOutType_Enum eTimeOutId) {
    return eTimeOutId >= 0 && eTimeOutId < kTimeOutCount;
}
