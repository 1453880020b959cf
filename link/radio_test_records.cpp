#include "link/radio_test_records.h"

#include <algorithm>
#include <cstddef>

#include "link/log_codes.h"
#include "link/packet_codes.h"
#include "link/packet_view.h"
#include "link/radio_test_status.h"
#include "link/text_log.h"

namespace {

constexpr size_t kIdOffset = 2;
constexpr size_t kFirstValue = 3;
constexpr size_t kSecondValue = 4;

/// A byte of a record: its text in the log, its offset, and the field that keeps it (null: none).
template <class State>
struct Value {
    const char* sText = nullptr;
    size_t iOffset = 0;
    unsigned char State::*pField = nullptr;
    unsigned char (*pfnMeaning)(unsigned char) = nullptr; // converts what is logged and kept; null: unchanged

    unsigned char Of(const PacketView& record) const {
        const unsigned char iByte = record.U8(iOffset);
        return pfnMeaning == nullptr ? iByte : pfnMeaning(iByte);
    }
};

/// A kind of record. pfnAlso stores the values that need more than a field.
template <class State>
struct Kind {
    const char* sName;
    Value<State> aValues[3] = {};
    void (*pfnAlso)(State& state, unsigned char iFirst, unsigned char iSecond) = nullptr;
};

unsigned char IsZero(unsigned char iByte) {
    return iByte == 0 ? 1 : 0;
}

void StorePerChannelType(GSM_BER_State& state, unsigned char iType, unsigned char iCrcPass) {
    if (iType >= std::size(state.aTypeReceived))
        return;
    state.aTypeReceived[iType] = 1;
    state.aTypeCrcPass[iType] = iCrcPass;
}

void StorePerFlow(EGPRS_BER_State& state, unsigned char iFlow, unsigned char iEvent) {
    if (iFlow == FTM_LOG_EGPRS_BER_TBF_DL)
        state.iDownlinkEvent = iEvent;
    else if (iFlow == FTM_LOG_EGPRS_BER_TBF_UL)
        state.iUplinkEvent = iEvent;
}

using Gsm = GSM_BER_State;
constexpr Kind<Gsm> kGsmKinds[] = {
    {"LOG_FTM2_START_GSM_MODE_CNF"},
    {"LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF",
     {{"         LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF.bSCCH_Found", kFirstValue, &Gsm::iSchFound},
      {"            LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF.iSchData", kSecondValue, &Gsm::iSchData}}},
    {"LOG_FTM2_START_IDLE_MODE_CNF"},
    {"LOG_FTM2_CHANNEL_ASSIGN_CNF",
     {{"         LOG_FTM2_CHANNEL_ASSIGN_CNF.iCHANNEL_ASSIGN_CNF_status", kFirstValue, &Gsm::bChannelAssigned,
       IsZero}}},
    {"LOG_FTM2_CHANNEL_RELEASE_CNF"},
    {"LOG_FTM2_STOP_GSM_MODE_CNF"},
    {"LOG_FTM2_PH_DATA_IND",
     {{"      LOG_FTM2_PH_DATA_IND.iPH_ChannelType", kFirstValue, &Gsm::iChannelType},
      {"         LOG_FTM2_PH_DATA_IND.iPH_CRC_Pass", kSecondValue, &Gsm::iCrcPass}},
     StorePerChannelType},
    {"LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT",
     {{"      LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT.iDED_RPtRxLev_Full", kFirstValue, &Gsm::iRxLevFull},
      {"     LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT.iDED_RPtRxQual_Full", kSecondValue, &Gsm::iRxQualFull}}},
};

using Egprs = EGPRS_BER_State;
constexpr int kFirstEgprsId = FTM_LOG_EGPRS_BER_TBF_IND;
constexpr Kind<Egprs> kEgprsKinds[] = {
    {"FTM_LOG_EGPRS_BER_TBF_IND",
     {{"         FTM_LOG_EGPRS_BER_TBF_IND.type", kFirstValue},
      {"        FTM_LOG_EGPRS_BER_TBF_IND.event", kSecondValue}},
     StorePerFlow},
    {"FTM_LOG_EGPRS_BER_MAC_PH_DATA_IND"},
    {"FTM_LOG_EGPRS_BER_SERVING_MEAS_IND",
     {{"         LOG_FTM2_CHANNEL_ASSIGN_CNF.RxLev_average", kFirstValue, &Egprs::iRxLevAverage}}},
};

using Wcdma = WCDMA_BER_State;
constexpr Kind<Wcdma> kWcdmaKinds[] = {
    {"LOG_FTM2_WCDMA_START_MODE_CNF"},
    {"LOG_FTM2_WCDMA_STOP_MODE_CNF"},
    {"LOG_FTM2_WCDMA_START_IDLE_MODE_REQ"},
    {"LOG_FTM2_WCDMA_ACQUIRE_CNF ",
     {{"        LOG_FTM2_WCDMA_ACQUIRE_CNF.status", kFirstValue, &Wcdma::iAcquireStatus},
      {"     LOG_FTM2_WCDMA_ACQUIRE_CNF.frequency", kSecondValue, &Wcdma::iFrequency},
      {"      LOG_FTM2_WCDMA_ACQUIRE_CNF.scr_code", kSecondValue + 2, &Wcdma::iScramblingCode}}},
    {"LOG_FTM2_WCDMA_CPHY_SETUP_CNF",
     {{"         LOG_FTM2_WCDMA_CPHY_SETUP_CNF.status", kFirstValue, &Wcdma::iSetupStatus}}},
    {"LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND",
     {{"      LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND.status", kFirstValue, &Wcdma::iEstablishedStatus}}},
    {"LOG_FTM2_WCDMA_CPHY_ERROR_IND"},
    {"LOG_FTM2_WCDMA_RL_FAILURE_IND"},
};

using Hsdpa = HSDPA_BER_State;
constexpr int kFirstHsdpaId = LOG_FTM2_HSDPA_HS_CHANNEL_START_IND;
constexpr Kind<Hsdpa> kHsdpaKinds[] = {
    {"FTM_LOG_HSDPA_HS_CHANNEL_START_IND",
     {{"        FTM_LOG_HSDPA_HS_CHANNEL_START_IND.status", kFirstValue, &Hsdpa::iStartStatus}}},
    {"FTM_LOG_HSDPA_HS_CHANNEL_STOP_IND",
     {{"        FTM_LOG_HSDPA_HS_CHANNEL_STOP_IND.status", kFirstValue, &Hsdpa::iStopStatus}}},
    {"FTM_LOG_HSDPA_HS_CHANNEL_RECFG_IND",
     {{"        FTM_LOG_HSDPA_HS_CHANNEL_RECFG_IND.ReconfigureStatus", kFirstValue,
       &Hsdpa::iReconfigureStatus}}},
};

/// Returns the kind at an index, or null.
template <class State, size_t kCount>
const Kind<State>* At(const Kind<State> (&kinds)[kCount], int iIndex) {
    return iIndex >= 0 && iIndex < static_cast<int>(kCount) ? &kinds[iIndex] : nullptr;
}

/// Calls work(kind, flag number, the test's block in RadioTestBlocks) for the kind of a record; false for an
/// unknown kind.
template <class Work>
bool WithKind(const PacketView& record, Work work) {
    const unsigned short iType = record.U16(0);
    const int iId = record.U8(kIdOffset);
    const auto call = [&](const auto* pKind, int iIndex, auto pBlock) {
        if (pKind != nullptr)
            work(*pKind, iIndex, pBlock);
        return pKind != nullptr;
    };
    if (!record.Has(kIdOffset, 1))
        return false;
    if (iType == kGsmLogType)
        return call(At(kGsmKinds, iId), iId, &RadioTestBlocks::gsm) ||
               call(At(kEgprsKinds, iId - kFirstEgprsId), iId - kFirstEgprsId, &RadioTestBlocks::egprs);
    if (iType == kWcdmaLogType)
        return call(At(kWcdmaKinds, iId), iId, &RadioTestBlocks::wcdma) ||
               call(At(kHsdpaKinds, iId - kFirstHsdpaId), iId - kFirstHsdpaId, &RadioTestBlocks::hsdpa);
    return false;
}

template <class State>
const char* NameOf(const Kind<State>* pKind) {
    return pKind == nullptr ? nullptr : pKind->sName;
}

} // namespace

std::span<const unsigned char> FindTestRecord(std::span<const unsigned char> packet) {
    const PacketView view(packet);
    if (view.U8(0) != kLogRecord || view.U16(kRecordLogCodeOffset) != kFtmLogCode ||
        packet.size() < kFtmLogTypeOffset)
        return {};
    const auto record = packet.subspan(kFtmLogTypeOffset);
    bool bWhole = true;
    const bool bKnown = WithKind(PacketView(record), [&](const auto& kind, int, auto) {
        bWhole = std::ranges::all_of(
            kind.aValues, [&](const auto& value) { return PacketView(record).Has(value.iOffset, 1); });
    });
    return bKnown && bWhole ? record : std::span<const unsigned char>{};
}

void LogTestRecord(std::span<const unsigned char> record, DataLogFileHandler& log) {
    WithKind(PacketView(record), [&](const auto& kind, int, auto) {
        log.LogMessage(LOG_ASYNC, "%s", kind.sName);
        for (const auto& value : kind.aValues)
            if (value.sText != nullptr)
                log.LogMessage(LOG_ASYNC, "%s = %d", value.sText, value.Of(PacketView(record)));
    });
}

void StoreTestRecord(std::span<const unsigned char> record, RadioTestBlocks& blocks) {
    const PacketView view(record);
    WithKind(view, [&](const auto& kind, int iIndex, auto pBlock) {
        auto& block = blocks.*pBlock;
        block.aReceived[iIndex] = 1;
        for (const auto& value : kind.aValues)
            if (value.pField != nullptr)
                block.*value.pField = value.Of(view);
        if (kind.pfnAlso != nullptr)
            kind.pfnAlso(block, view.U8(kFirstValue), view.U8(kSecondValue));
    });
}

const char* TestRecordName(log_FTM2_GSM_BER_log_id_enum eId) {
    return NameOf(At(kGsmKinds, eId));
}

const char* TestRecordName(log_FTM2_WCDMA_BER_log_id_enum eId) {
    return NameOf(At(kWcdmaKinds, eId));
}

const char* TestRecordName(log_FTM2_EGPRS_BER_log_id_enum eId) {
    return NameOf(At(kEgprsKinds, eId - kFirstEgprsId));
}
