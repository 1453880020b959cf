// The two settings that determine the form of factory-test (FTM) requests.
#pragma once

/// The first byte of FTM requests.
enum FTM_Command_Type : int {
    FTM_COMMAND_59 = 59,      // the older form, with a length field
    FTM_COMMAND_75 = 75,      // a subsystem command
    FTM_COMMAND_UNKNOWN = -1, // not detected
};

/// The mode field of FTM requests: the radio or function that the command addresses. Values without a name
/// are allowed.
enum FTM_Mode_Id_Enum : int {
    FTM_MODE_ID_FACTORY = 0,
    FTM_MODE_ID_CDMA_1X = 1,
    FTM_MODE_ID_BLUETOOTH = 4,
    FTM_MODE_ID_CDMA2000 = 7,
    FTM_MODE_ID_EVDO = 8,
    FTM_MODE_ID_LOG = 9,
    FTM_MODE_ID_AGPS = 10,
    FTM_MODE_ID_PMIC = 11,
    FTM_MODE_ID_GSM_BER = 13,
    FTM_MODE_ID_AUDIO = 14,
    FTM_MODE_ID_CAMERA = 15,
    FTM_MODE_ID_WCDMA_BER = 16,
    FTM_MODE_ID_CDMA_API2 = 18,
    FTM_MODE_ID_RF_COMMON = 20,
    FTM_MODE_ID_WCDMA_SECONDARY = 21,
};
