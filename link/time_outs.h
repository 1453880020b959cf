// The configurable time-outs of a connection.
#pragma once

/// Identifies a time-out: its index in the connection's table.
enum QMSL_TimeOutType_Enum : int {
    QMSL_TimeOut_SyncRequest = 0,      // an ordinary request
    QMSL_TimeOut_PhoneCheck = 1,       // each of the two requests of the phone check
    QMSL_TimeOut_ServerConnect = 2,    // connecting to the port server
    QMSL_TimeOut_StatisticsWait = 3,   // waits for radio-test statistics
    QMSL_TimeOut_DelayedResponse = 4,  // SIM-interface commands with a delayed response
    QMSL_TimeOut_MultipleResponse = 5, // commands that collect several delayed responses
    QMSL_TimeOut_CalibrationSweep = 6, // the RF calibration sweep
};
