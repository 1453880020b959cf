// Every method of the connection object, with a handset whose responses are the fuzzer's bytes.
#include <array>
#include <fstream>
#include <tuple>
#include <type_traits>

#include "hostile_phone.h"
#include "link/time_out_table.h"
#include "qlib/diag_ftm.h"

namespace {

/// What a kind of methods requires of its arguments.
struct Kind {
    size_t iElements = 1;   // in each array
    bool bCounts = false;   // each number is the number of elements
    bool bTimeOuts = false; // each number may be a time-out, so it is small
};
constexpr Kind kPlain{};
constexpr Kind kCounted{.bCounts = true};
constexpr Kind kTimed{.bTimeOuts = true};

/// One argument of a call, made from the input.
template <class Type>
class Argument {
    using Value = std::remove_cv_t<std::remove_pointer_t<std::remove_cvref_t<Type>>>;
    static constexpr bool kIsPointer = std::is_pointer_v<std::remove_cvref_t<Type>>;
    static constexpr bool kIsText = std::is_same_v<Type, const char*>;

public:
    Argument(Input& input, const Kind& kind) {
        if constexpr (kIsText) {
            m_sText = input.Text();
        } else {
            const size_t iElements = kIsPointer ? kind.iElements : 1;
            m_pValues = Area<Value>(iElements);
            for (size_t i = 0; i < std::min<size_t>(iElements, 16); ++i)
                m_pValues[i] = Make(input, kind);
        }
    }
    Type Get() {
        if constexpr (kIsText)
            return m_sText.c_str();
        else if constexpr (kIsPointer)
            return m_pValues.get();
        else
            return *m_pValues.get();
    }

private:
    static Value Make(Input& input, const Kind& kind) {
        if constexpr (std::is_class_v<Value>)
            return input.Value<Value>();
        else if constexpr (std::is_same_v<Value, bool>)
            return input.Byte() % 2 != 0;
        else if (kind.bCounts && !kIsPointer)
            return static_cast<Value>(kind.iElements);
        else if (kind.bTimeOuts)
            return static_cast<Value>(input.Byte() % 2);
        else
            return input.Value<Value>();
    }

    std::string m_sText;
    std::unique_ptr<Value[]> m_pValues;
};

template <class Result, class Family, class... Types>
void Invoke(Result (Family::*pMethod)(Types...), Diag_FTM& diag, Input& input, Kind kind) {
    if (kind.bCounts)
        kind.iElements = input.Count();
    std::tuple<Argument<Types>...> arguments{Argument<Types>(input, kind)...};
    std::apply([&](auto&... argument) { (diag.*pMethod)(argument.Get()...); }, arguments);
}

template <Kind kind, auto pMethod>
void Call(Diag_FTM& diag, Input& input) {
    Invoke(pMethod, diag, input, kind);
}

using D = Diag_FTM;
using Caller = void (*)(Diag_FTM& diag, Input& input);
template <Kind kind, auto... aMethods>
constexpr std::array kCalls = {&Call<kind, aMethods>...};

// Inputs refer to methods by position. Add methods at the end of their group, and groups at the end: then the
// corpus goes on meaning the same methods (see Chosen).

constexpr auto& kGeneral =
    kCalls<kPlain, &D::SendFtmCmd, &D::SendFtmCmd59, &D::SendEVDO, &D::SendCDMA2000, &D::SetCommandType,
           &D::SetSystemMode, &D::DIAG_NV_CNV_DIAG_BACKUP_F, &D::GPS_SET_TEST_MODE_PARAMS,
           &D::HS_DISPLAY_CAPTURE_DELAYED_CMD, &D::DIAG_VERNO_F, &D::DIAG_READ_ESN_F,
           &D::DIAG_KeyPress_ConfigureKeyDetect, &D::DIAG_KeyPress_StartCapture,
           &D::DIAG_KeyPress_AddMapEntry, &D::DIAG_KeyPress_GetNextKeyEvent, &D::DIAG_SetPhoneLoggingState,
           &D::DIAG_GetLogRanges, &D::DIAG_SetExtendedLogCode, &D::DIAG_AddExtendedLogCode,
           &D::DIAG_NV_WRITE_SetBatchMode, &D::DIAG_NV_WRITE_FlushBatchQueue, &D::DIAG_FindDebugMessage,
           &D::DIAG_STATUS_F, &D::DIAG_HS_DISPLAY_GET_PARAMS_CMD, &D::DIAG_ERR_READ_F, &D::DIAG_GET_DIPSW_F,
           &D::DIAG_HS_KEY_F, &D::DIAG_GET_FILE_ATTRIBUTES, &D::DIAG_SET_FILE_ATTRIBUTES, &D::EFS2_DIAG_MKDIR,
           &D::EFS2_DIAG_RENAME, &D::EFS2_DIAG_STAT, &D::EFS2_DIAG_STATFS, &D::EFS2_DIAG_CHMOD,
           &D::EFS2_DIAG_ACCESS, &D::EFS2_DIAG_CREATE_LINK, &D::EFS2_DIAG_ENUM_DIR, &D::SendFtmCmd75>;

constexpr auto& kFactory = kCalls<
    kPlain, &D::AutoDetectCommandType, &D::FTM_SET_CHAN, &D::FTM_GET_SYNTH_STATE, &D::FTM_GET_ADC_VAL,
    &D::FTM_GET_RX_AGC, &D::FTM_GET_CTON, &D::FTM_GET_FM_IQ, &D::FTM_GET_DVGA_OFFSET, &D::FTM_GET_LNA_OFFSET,
    &D::FTM_GET_CDMA_IM2, &D::FTM_GET_CDMA_IM2_WITH_SUPPRESSSION, &D::FTM_TEST_GET_DVGA_LNA,
    &D::FTM_TX_SWEEP_CAL, &D::FTM_GET_HDET_FROM_TX_SWEEP_CAL, &D::FTM_LOG_StartFTM_Log,
    &D::FTM_LOG_StopFTM_Log, &D::FTM_GET_RSSI, &D::FTM_DO_GSM_AUTOCAL, &D::FTM_SET_PATH_DELAY,
    &D::FTM_DO_CALPATH_RSB, &D::FTM_MF_SYNTH_LOCK, &D::FTM_MF_GET_AGC_STATE, &D::FTM_MF_GET_RX_RSSI,
    &D::FTM_MF_GET_RSSI_CAL_POINT, &D::FTM_MF_GET_IM2, &D::MFLO_GET_FLO_STATE, &D::MFLO_GET_FLO_SUBSTATE,
    &D::MFLO_GET_FLO_VERSION_INFO, &D::MFLO_GET_RF_CHNL, &D::MFLO_GET_RSSI_VALUE,
    &D::MFLO_GET_BOUND_FLOW_COUNT, &D::MFLO_GET_ACTIVE_MLC_COUNT, &D::MFLO_GET_MLC_INFO,
    &D::MFLO_GET_MLC_PLP_STAT_DYN_PARAMS, &D::MFLO_GET_MLC_DYN_PARAMS, &D::MFLO_GET_OIS_PLP_STAT,
    &D::MFLO_GET_FLO_PLP_DYN_PARAMS, &D::FTM_PMIC_RTC_SET_GET_TIME, &D::FTM_PMIC_RTC_SET_GET_ALARM_TIME,
    &D::FTM_PMIC_RTC_GET_ALARM_STATUS, &D::FTM_PMIC_RTC_SET_GET_TIME_ADJUST, &D::FTM_PMIC_INT_GET_RT_STATUS,
    &D::FTM_AUDIO_TONES_PLAY, &D::FTM_CAMERA_SET_PARM, &D::FTM_CAMERA_GET_PARM, &D::FTM_CAMERA_GET_INFO,
    &D::FTM_CAMERA_TAKE_PICTURE_AND_ENCODE, &D::FTM_CAMERA_PerformTakePictureSequence, &D::FTM_AGPS_SELF_TEST,
    &D::FTM_AGPS_GET_IQ_DATA, &D::BT_GetModuleVersion, &D::FTM_BT_Enable_Bluetooth>;

constexpr auto& kSessions =
    kCalls<kPlain, &D::FTM_GSM_BER_AssignBCCH, &D::FTM_GSM_BER_AssignTraffic, &D::FTM_GSM_BER_Handover,
           &D::FTM_GSM_BER_ReleaseTCH, &D::FTM_GSM_BER_StopSession, &D::FTM_GSM_BER_GetStatus,
           &D::FTM_GSM_BER_GetEventStatus, &D::FTM_GSM_BER_IsTrafficValid, &D::FTM_GSM_BER_GetRxMetrics,
           &D::FTM_EGPRS_BER_AssignBCCH, &D::FTM_EGPRS_BER_StartIdleMode, &D::FTM_EGPRS_BER_Configure_DL_TBF,
           &D::FTM_EGPRS_BER_Configure_UL_TBF, &D::FTM_EGPRS_BER_Establish_SRB_LOOPBACK,
           &D::FTM_EGPRS_BER_Release_All_TBF, &D::FTM_EGPRS_BER_GetRxMetrics, &D::FTM_WCDMA_BER_AcquirePilot,
           &D::FTM_WCDMA_BER_SetupDefaultRMC_DCH, &D::FTM_WCDMA_BER_Handover, &D::FTM_WCDMA_BER_StopSession,
           &D::FTM_WCDMA_BER_GetStatus, &D::FTM_WCDMA_BER_GetEventStatus, &D::FTM_HSDPA_BER_StartSession,
           &D::FTM_HSDPA_BER_StopSession, &D::FTM_HSDPA_BLER_Reconfigure_HS,
           &D::FTM_HSDPA_BLER_Configure_HS_DSCH_HSET>;

// Commands that only need a response of the right kind.
constexpr auto& kGeneralReceipts =
    kCalls<kPlain, &D::DOWNLOAD_Ping, &D::DIAG_KeyPress_StopCapture, &D::DIAG_KeyPress_ClearQueue,
           &D::DIAG_KeyPress_ClearMap, &D::DIAG_KeyPress_GetQueueSize, &D::DIAG_ClearAllLogCodes,
           &D::DIAG_SetMessageLevel, &D::DIAG_SetMessageFilter, &D::DIAG_EventReportControl,
           &D::DIAG_ClearPhoneLogQueue, &D::DIAG_ClearCommandResponseQueue, &D::DIAG_GetPhoneLogQueueSize,
           &D::DIAG_GetCommandResponseQueueSize, &D::DIAG_GSM_CALL_END_F, &D::DIAG_ERR_CLEAR_F,
           &D::DIAG_CONTROL_F, &D::DIAG_DLOAD_F, &D::DIAG_SECURITY_FREEZE_F, &D::DIAG_SET_DIPSW_F,
           &D::EFS2_DIAG_RMDIR, &D::EFS2_DIAG_UNLINK>;

constexpr auto& kFactoryReceipts =
    kCalls<kPlain, &D::FTM_AUDIO_SET_PATH, &D::FTM_AUDIO_SET_VOLUME, &D::FTM_AUDIO_DSP_LOOPBACK,
           &D::FTM_AUDIO_PCM_LOOPBACK, &D::FTM_AUDIO_TONES_STOP, &D::FTM_AUDIO_NS_CONTROL,
           &D::FTM_AUDIO_SET_CODECTXGAIN_ADJUST, &D::FTM_AUDIO_PCM_CAPTURE_STOP, &D::FTM_BT_SetCW,
           &D::MFLO_ACTIVATE_FLOW, &D::MFLO_DEACTIVATE_FLOW, &D::MFLO_START_FLO, &D::MFLO_SET_RF_CHNL,
           &D::MFLO_ENABLE_FTAP_PLP_DATA, &D::MFLO_ENABLE_FTAP_OIS, &D::MFLO_ENABLE_WIC_LIC,
           &D::FTM_MF_TUNE_PLL, &D::FTM_MF_LNA_SELECT, &D::FTM_MF_RF_SWITCH_CONFIG, &D::FTM_MF_SET_GAIN_STATE,
           &D::FTM_MF_WRITE_CAL_DATA, &D::MFLO_RST_PLP_STATS, &D::MFLO_RST_MLC_PLP_STATS,
           &D::MFLO_RST_OIS_PLP_STAT, &D::FTM_CAMERA_START, &D::FTM_CAMERA_STOP,
           &D::FTM_CAMERA_SET_DIMENSIONS, &D::FTM_CAMERA_SET_SENSOR_ID, &D::FTM_CAMERA_START_PREVIEW,
           &D::FTM_CAMERA_STOP_PREVIEW, &D::FTM_CDMA_API2_COMMIT_RF_TO_NV, &D::FTM_LOG_ENABLE,
           &D::FTM_LOG_DISABLE, &D::FTM_AGPS_SET_TEST_MODE, &D::FTM_AGPS_IDLE_MODE,
           &D::FTM_AGPS_STANDALONE_TEST_MODE, &D::FTM_AGPS_SV_TRACKING, &D::FTM_AGPS_IQ_CAPTURE,
           &D::FTM_SET_TRANSMIT_CONT, &D::FTM_SET_TRANSMIT_BURST, &D::FTM_SET_RX_BURST,
           &D::FTM_SET_RX_CONTINUOUS, &D::FTM_SET_TX_POWER_LEVEL, &D::FTM_SET_PA_DAC_INPUT,
           &D::FTM_SET_TX_CAL_SWEEP, &D::FTM_SET_TX_FRAME_MATRIX, &D::FTM_ENABLE_POLAR_REF_CAL,
           &D::FTM_SET_TWOTONE_FREQ_OFFSET, &D::FTM_SET_OPLL_BW, &D::FTM_BASEBAND_BW_CAL,
           &D::FTM_PMIC_CHG_SET_SWITCH_STATE, &D::FTM_PMIC_CONFIG_WALL_PULSE_CHGR,
           &D::FTM_PMIC_CONFIG_WALL_PULSE_CHGR_VBAT_DET, &D::FTM_PMIC_CONFIG_WALL_CHGR_TRANSISTOR_LIMITS,
           &D::FTM_PMIC_CONFIG_TRICKLE_CHARGER, &D::FTM_PMIC_CONFIG_COIN_CELL_CHGR,
           &D::FTM_PMIC_CONFIG_BATT_ALARM, &D::FTM_PMIC_CONFIG_USB_TRANSISTOR_LIMITS,
           &D::FTM_PMIC_CONFIG_PWR_CTRL_LIMIT, &D::FTM_PMIC_RTC_STOP, &D::FTM_PMIC_RTC_DISABLE_ALARM,
           &D::FTM_PMIC_VREG_CONTROL, &D::FTM_PMIC_VREG_SET_LEVEL, &D::FTM_PMIC_VREG_CONFIG_SMPS_MODE,
           &D::FTM_PMIC_VREG_CONFIG_LDO_PD_SW, &D::FTM_PMIC_VREG_CONFIG_LP_MODE_CONTROL,
           &D::FTM_PMIC_VREG_SMPS_CLK_CONFIG, &D::FTM_PMIC_AMUX_CONFIG, &D::FTM_PMIC_INT_IRQ_CLR,
           &D::FTM_SET_PMIC_DRIVE_LEVEL, &D::FTM_PMIC_SPKR_CONFIG, &D::FTM_SET_PDM, &D::FTM_SET_TX_ON,
           &D::FTM_SET_TX_OFF, &D::FTM_CDMA_CW_WAVEFORM, &D::FTM_SET_PA_RANGE, &D::FTM_SET_LNA_RANGE,
           &D::FTM_SET_RF_POWER_MODE, &D::FTM_SET_SECONDARY_CHAIN, &D::FTM_SECOND_CHAIN_TEST_CALL,
           &D::FTM_SET_WCDMA_SECONDARY_CHAIN, &D::FTM_SET_LNA_OFFSET, &D::FTM_SET_DVGA_OFFSET,
           &D::FTM_SET_FREQ_SENSE_GAIN, &D::FTM_CONFIGURE_TX_SWEEP_CAL, &D::FTM_SET_HDET_TRACKING>;

constexpr auto& kTestRequests = kCalls<
    kPlain, &D::FTM_EGPRS_BER_START_GPRS_IDLE_MODE_REQ, &D::FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK,
    &D::FTM_EGPRS_BER_CONFIGURE_DL_TBF, &D::FTM_EGPRS_BER_CONFIGURE_UL_TBF, &D::FTM_EGPRS_BER_RELEASE_ALL_TBF,
    &D::FTM_EGPRS_BER_RELEASE_UL_TBF, &D::FTM_EGPRS_BER_Release_UL_TBF, &D::FTM_EGPRS_BER_ClearStatus,
    &D::FTM_EGPRS_BER_GetStatus, &D::FTM_GSM_START_MODE_REQ, &D::FTM_GSM_SELECT_SPECIFIC_BCCH_REQ,
    &D::FTM_GSM_START_IDLE_MODE_REQ, &D::FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ, &D::FTM_GSM_CHANNEL_ASSIGN_REQ,
    &D::FTM_GSM_CHANNEL_RELEASE_REQ, &D::FTM_GSM_STOP_GSM_MODE_REQ, &D::FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ,
    &D::FTM_GSM_ConfigLoopbackType, &D::FTM_GSM_BER_ClearStatus, &D::FTM_HSDPA_BLER_CMD_START_HS,
    &D::FTM_HSDPA_BLER_CMD_STOP_HS, &D::FTM_HSDPA_BLER_CMD_RECONFIG_HS,
    &D::FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH, &D::FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH,
    &D::FTM_HSDPA_BLER_Configure_PDSCH, &D::FTM_HSDPA_BLER_Configure_HS_DPCCH, &D::FTM_HSDPA_BER_ClearStatus,
    &D::FTM_HSDPA_BER_GetStatus, &D::FTM_WCDMA_START_MODE_REQ, &D::FTM_WCDMA_STOP_MODE_REQ,
    &D::FTM_WCDMA_START_IDLE_MODE_REQ, &D::FTM_WCDMA_ACQUIRE_REQ, &D::FTM_WCDMA_RMC_DCH_SETUP_REQ,
    &D::FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B, &D::FTM_WCDMA_RMC_DCH_SETUP_REQ_V2, &D::FTM_WCDMA_BER_SetupRMC_DCH,
    &D::FTM_WCDMA_BER_Handover_V2B, &D::FTM_WCDMA_BER_ClearStatus>;

constexpr auto& kArrays =
    kCalls<kCounted, &D::DIAG_SetExtendedLogMask, &D::DIAG_AddExtendedLogCodes, &D::DIAG_NV_READ_F,
           &D::DIAG_NV_READ_ARRAY_F, &D::DIAG_NV_WRITE_F, &D::DIAG_NV_WRITE_ARRAY_F,
           &D::DIAG_NV_WRITE_BatchQueue_SetRO_List, &D::FTM_AUDIO_GET_PCM_CAPTURE_DATA,
           &D::FTM_BT_HCI_USER_CMD, &D::MFLO_GET_BOUND_FLOW_LIST, &D::MFLO_GET_ACTIVE_MLC_LIST,
           &D::FTM_CAMERA_GET_PICTURE, &D::FTM_CAMERA_GetEntirePicture, &D::FTM_CDMA_API2_CALIBRATE_DVGA,
           &D::FTM_CDMA_API2_CALIBRATE_LNA, &D::FTM_CDMA_API2_CALIBRATE_IM2, &D::FTM_GSM_POLAR_TX_SWEEP_CAL,
           &D::ReadExtendedLogMask>;
constexpr auto& kWaits = kCalls<kTimed, &D::FTM_SET_MODE, &D::FTM_AUDIO_PCM_CAPTURE,
                                &D::FTM_LOG_WaitForNextLog, &D::FTM_GSM_BER_StartSession,
                                &D::FTM_WCDMA_BER_StartSession, &D::Send, &D::SendWithDifferentResponseCmd>;

// Arrays of fixed size.
constexpr Caller kFixed[] = {Call<Kind{8}, &D::FTM_HSDPA_BLER_Configure_HS_DSCH>,
                             Call<Kind{6}, &D::DIAG_SPC_F>,
                             Call<Kind{14}, &D::FTM_CDMA_API2_CALIBRATE_INTELLICEIVER>,
                             Call<Kind{9}, &D::DIAG_GSM_STATUS_F>,
                             Call<Kind{32}, &D::FTM_GET_ALL_HDET_FROM_TX_SWEEP_CAL>,
                             Call<Kind{32}, &D::DIAG_GSM_CALL_ORIG_F>,
                             Call<Kind{64}, &D::FTM_SET_PA_PROFILE>,
                             Call<Kind{512}, &D::DIAG_EXT_BUILD_ID_F>,
                             Call<Kind{512}, &D::EFS2_DIAG_DEV_INFO>,
                             Call<Kind{512}, &D::EFS2_DIAG_READ_LINK>,
                             Call<Kind{512}, &D::EFS2_DIAG_EXTENDED_INFO>,
                             Call<Kind{4096}, &D::DOWNLOAD_Hello>,
                             Call<Kind{4096}, &D::DIAG_GetNextPhoneLog>,
                             Call<Kind{4096}, &D::DIAG_GetNextCommandResponse>,
                             Call<Kind{4096, false, true}, &D::DIAG_GetSingleLog>,
                             Call<Kind{8}, &D::FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH>,
                             Call<Kind{6}, &D::FTM_BT_SetAddr>,
                             Call<Kind{4}, &D::FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH>,
                             Call<Kind{4}, &D::FTM_HSDPA_BLER_Configure_HS_SCCH>};

template <class Item>
void PeekAndPoke(Diag_FTM& diag, Input& input) {
    const auto iCount = static_cast<unsigned short>(input.Count());
    const auto pItems = Area<Item>(iCount);
    diag.DIAG_MEMORY_PEEK_F(0, iCount, pItems.get());
    diag.DIAG_MEMORY_POKE_F(0, iCount, pItems.get());
}

void CapturePcm(Diag_FTM& diag, Input& input) {
    DWORD iSize = static_cast<DWORD>(input.Count());
    const auto iPiece = static_cast<unsigned short>(input.Count());
    diag.FTM_AUDIO_CapturePCMandTransferData(1, 0, iPiece, Area<unsigned char>(iSize).get(), iSize);
}

void BluetoothEvent(Diag_FTM& diag, Input& input) {
    const unsigned char aCommand[] = {3, 12, 0};
    auto iSize = static_cast<unsigned short>(input.Count());
    diag.FTM_BT_HCI_USER_CMD_WithEventResponse(aCommand, sizeof aCommand, Area<unsigned char>(iSize).get(),
                                               iSize, 0);
}

void MultipleLogs(Diag_FTM& diag, Input& input) {
    unsigned char aaBuffers[3][kMaxPacketSize];
    unsigned char* apBuffers[] = {aaBuffers[0], aaBuffers[1], aaBuffers[2]};
    unsigned short aSizes[3];
    unsigned short iLogs = input.Byte() % 4;
    diag.DIAG_GetMultipleLogs(1, input.Value<uint16_t>(), iLogs, 0, apBuffers, aSizes);
}

void TransferFile(Diag_FTM& diag, Input& input) {
    constexpr const char* kLocalName = "fuzz-file";
    const std::string sContent(input.Count(), 'x');
    std::ofstream(kLocalName) << sContent;
    const unsigned iHow = input.Byte() % 3;
    if (iHow == 0)
        diag.EFS2_DIAG_READ_FILE(kLocalName, input.Text().c_str());
    else if (iHow == 1)
        diag.EFS2_DIAG_WRITE_FILE(kLocalName, input.Text().c_str());
    else
        diag.EFS2_DIAG_WRITE_FILE_MEM(sContent.data(), static_cast<DWORD>(sContent.size()), "file");
}

constexpr Caller kSequences[] = {PeekAndPoke<unsigned char>,
                                 PeekAndPoke<unsigned short>,
                                 PeekAndPoke<DWORD>,
                                 CapturePcm,
                                 BluetoothEvent,
                                 MultipleLogs,
                                 TransferFile};

// Files, directories and names of the phone, one by one.
constexpr Caller kOpenObjects[] = {
    Call<kPlain, &D::EFS2_DIAG_OPEN>,        Call<Kind{1536}, &D::EFS2_DIAG_READ>,
    Call<Kind{1536}, &D::EFS2_DIAG_WRITE>,   Call<kPlain, &D::EFS2_DIAG_CLOSE>,
    Call<kPlain, &D::EFS2_DIAG_OPENDIR>,     Call<kPlain, &D::EFS2_DIAG_READDIR>,
    Call<kPlain, &D::EFS2_DIAG_CLOSEDIR>,    Call<kPlain, &D::EFS2_DIAG_MAKE_DIRECTORY>,
    Call<kPlain, &D::EFS2_DIAG_REMOVE_FILE>, Call<kPlain, &D::EFS2_DIAG_REMOVE_DIRECTORY>,
    Call<kPlain, &D::EFS2_DIAG_MAKE_LINK>,   Call<Kind{512}, &D::EFS2_DIAG_LINK_TARGET>,
};

/// A group, and how many of its calls were there when its inputs were first collected.
struct Group {
    std::span<const Caller> calls;
    size_t iSettled; // stays when calls are added
};
constexpr Group kGroups[] = {
    {kGeneral, 38},    {kFactory, 52},  {kSessions, 26},        {kArrays, 18},          {kWaits, 7},
    {kFixed, 19},      {kSequences, 7}, {kGeneralReceipts, 21}, {kFactoryReceipts, 86}, {kTestRequests, 38},
    {kOpenObjects, 12}};

constexpr size_t kSettledGroups = 10;

/// The item that a byte of the input refers to. Bytes go round the settled items, except those from 255 down,
/// one of which belongs to each item that was added since: 255 to the first, 254 to the second.
template <class Item>
const Item& Chosen(std::span<const Item> items, size_t iSettled, uint8_t iByte) {
    const size_t iAdded = iSettled + 255 - iByte;
    return items[iAdded < items.size() ? iAdded : iByte % iSettled];
}

void Configure(Diag_FTM& diag, unsigned iFlags) {
    for (int i = 0; i < kTimeOutCount; ++i)
        diag.ConfigureTimeOut(static_cast<QMSL_TimeOutType_Enum>(i), iFlags & 1);
    diag.SetLogFlags((iFlags & 2) != 0 ? ~0U : 0U);
    diag.ConfigureEfsCallbacks(
        &diag,
        [](char* const, char* const, int, int, DWORD iDone, DWORD, void* pDiag) -> unsigned char {
            return iDone > 4000 && static_cast<Diag_FTM*>(pDiag)->EFS2_DIAG_ABORT();
        },
        [](char* const sPath, unsigned char, unsigned short, unsigned char, unsigned char, DWORD, DWORD,
           void*) -> unsigned char { return std::strlen(sPath) < sizeof Efs2DirItem::sName; });
    diag.OpenPort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize) {
    Input input(pData, iSize);
    ReplaceLines([&input](int) { return std::make_unique<HostileLine>(input); });
    Diag_FTM diag(1);
    Configure(diag, input.Byte());
    for (int i = 0; i < 8 && !input.IsEmpty(); ++i) {
        const Group& group = Chosen<Group>(kGroups, kSettledGroups, input.Byte());
        Chosen(group.calls, group.iSettled, input.Byte())(diag, input);
    }
    return 0;
}
