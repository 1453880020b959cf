// What the phone's radio tests have reported: one status block per kind of test, in the exact layout that
// callers receive.
#pragma once

/// The records of a GSM test, with the phone's numbers. Values without a name are allowed.
enum log_FTM2_GSM_BER_log_id_enum : int {
    LOG_FTM2_START_GSM_MODE_CNF = 0,
    LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF = 1,
    LOG_FTM2_START_IDLE_MODE_CNF = 2,
    LOG_FTM2_CHANNEL_ASSIGN_CNF = 3,
    LOG_FTM2_CHANNEL_RELEASE_CNF = 4,
    LOG_FTM2_STOP_GSM_MODE_CNF = 5,
    LOG_FTM2_PH_DATA_IND = 6,
    LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT = 7,
};

/// The records of an EGPRS test.
enum log_FTM2_EGPRS_BER_log_id_enum : int {
    FTM_LOG_EGPRS_BER_TBF_IND = 64,
    FTM_LOG_EGPRS_BER_MAC_PH_DATA_IND = 65,
    FTM_LOG_EGPRS_BER_SERVING_MEAS_IND = 66,
};

/// A temporary block flow of an EGPRS test.
enum ftm_log_egprs_tbf_enum : int {
    FTM_LOG_EGPRS_BER_TBF_DL = 0,
    FTM_LOG_EGPRS_BER_TBF_UL = 1,
};
/// What happened to a block flow.
enum ftm_log_egprs_tbf_event_type : int {
    FTM_LOG_EGPRS_TBF_EVENT_ESTABLISHED = 0,
    FTM_LOG_EGPRS_TBF_EVENT_RELEASED = 1,
};

/// The records of a WCDMA test.
enum log_FTM2_WCDMA_BER_log_id_enum : int {
    LOG_FTM2_WCDMA_START_MODE_CNF = 0,
    LOG_FTM2_WCDMA_STOP_MODE_CNF = 1,
    LOG_FTM2_WCDMA_START_IDLE_MODE_REQ = 2,
    LOG_FTM2_WCDMA_ACQUIRE_CNF = 3,
    LOG_FTM2_WCDMA_CPHY_SETUP_CNF = 4,
    LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND = 5,
    LOG_FTM2_WCDMA_CPHY_ERROR_IND = 6,
    LOG_FTM2_WCDMA_RL_FAILURE_IND = 7,
};

/// The records of an HSDPA test.
enum log_FTM2_HSDPA_BER_log_id_enum : int {
    LOG_FTM2_HSDPA_HS_CHANNEL_START_IND = 64,
    LOG_FTM2_HSDPA_HS_CHANNEL_STOP_IND = 65,
    LOG_FTM2_HSDPA_HS_CHANNEL_RECFG_IND = 66,
};

/// What a GSM test has reported. In every block of this kind aReceived has a flag per record id (counted from
/// the first id of its kind): 1 after a record of that id arrived since the last clear. The other fields hold
/// the values of the latest such record; clearing does not change them unless stated otherwise. Everything is
/// initially 0.
struct GSM_BER_State {
    unsigned char aReceived[8];
    unsigned char iSchFound; // 1: the broadcast channel was found
    unsigned char iSchData;
    unsigned char aUnused[3];
    unsigned char bChannelAssigned; // 1: the last assignment succeeded
    unsigned char iChannelType;     // of the last data indication, like iCrcPass
    unsigned char iCrcPass;
    unsigned char aTypeReceived[8]; // per channel type 0 to 7; cleared by a clear
    unsigned char aTypeCrcPass[8];  // per channel type; cleared by a clear
    unsigned char iRxLevFull;
    unsigned char iRxQualFull;
};
static_assert(sizeof(GSM_BER_State) == 34);

/// What an EGPRS test has reported (see GSM_BER_State).
struct EGPRS_BER_State {
    unsigned char aReceived[3];
    unsigned char iUnused;
    unsigned char iUplinkEvent; // a clear sets it to 2, which is no event
    unsigned char iDownlinkEvent;
    unsigned char iRxLevAverage;
};
static_assert(sizeof(EGPRS_BER_State) == 7);

/// What a WCDMA test has reported (see GSM_BER_State).
struct WCDMA_BER_State {
    unsigned char aReceived[8];
    unsigned char iAcquireStatus; // 1: the pilot was acquired
    unsigned char iFrequency;     // low 8 bits
    unsigned char aUnused1[3];
    unsigned char iScramblingCode; // low 8 bits
    unsigned char aUnused2[3];
    unsigned char iSetupStatus;       // 1: the channel is set up
    unsigned char iEstablishedStatus; // 1: the physical channel is established
    unsigned char iCleared;           // always 0
    unsigned char aUnused3[16];
};
static_assert(sizeof(WCDMA_BER_State) == 36);

/// What an HSDPA test has reported (see GSM_BER_State). Each status is that of the latest confirmation.
struct HSDPA_BER_State {
    unsigned char aReceived[3];
    unsigned char iStartStatus;
    unsigned char iStopStatus;
    unsigned char iReconfigureStatus;
};
static_assert(sizeof(HSDPA_BER_State) == 6);
