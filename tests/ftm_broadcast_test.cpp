// Lists, records and signal strength of the broadcast receiver.
#include <cstring>

#include "ftm_rows.h"

namespace {

using FtmBroadcastTest = FtmRowsTest;

TEST_F(FtmBroadcastTest, FlowListIsCompleteOrUnchanged) {
    const std::string sFirst = " 56 34 12 01 02 03 04 05 06";
    const std::string sSecond = " FF FF FF 06 05 04 03 02 01";
    const struct {
        unsigned char iRoom;
        std::string sAnswer;
        const char* sOutcome;
    } cases[] = {
        {2, "02" + sFirst + sSecond, "true 2 123456:123456 ffffff:654321"},
        {1, "03" + sFirst + sSecond + sFirst, "true 3 7:000000 7:000000"}, // more than the buffer holds
        {2, "02" + sFirst + " FF FF FF 06 05 04 03 02", "false 2 7:000000 7:000000"},
        {255, "FF" + sFirst + sSecond, "false 255 7:000000 7:000000"}, // more than the response holds
    };
    for (const auto& test : cases) {
        m_phone.Answer("4B 2B 0B 00", Hex("4B 2B 0B 00 " + test.sAnswer));
        mftypes_active_flow_info aFlows[2] = {{7, 0, 0, 0, 0, 0, 0}, {7, 0, 0, 0, 0, 0, 0}};
        unsigned char iCount = test.iRoom;
        std::ostringstream outcome;
        outcome << (m_diag.MFLO_GET_BOUND_FLOW_LIST(iCount, aFlows) ? "true " : "false ") << +iCount;
        for (const auto& flow : aFlows)
            outcome << std::hex << ' ' << flow.FlowID << ':' << +flow.MlcID << +flow.StreamID
                    << +flow.StreamUsesBothLayers << +flow.ByteInterleaveEnabled << +flow.BindingType
                    << +flow.System;
        EXPECT_EQ(outcome.str(), test.sOutcome);
    }
}

/// Returns a channel in hex: six bytes, then sixteen counters that count up from `iFirst`.
std::string ChannelBytes(unsigned char iFirst) {
    std::string sBytes = " 02 01 03 04 06 05";
    for (unsigned char i = 0; i < 16; ++i)
        sBytes += " " + handset::ToHex({static_cast<uint8_t>(iFirst + i), 0, 0, 0x80});
    return sBytes;
}

bool IsChannel(const mftypes_active_mlc_info& channel, DWORD iFirst) {
    const auto& stats = channel.PlpStats;
    return channel.Base_FFT_Address == 0x102 && channel.TransmitMode == 3 && channel.OuterCode == 4 &&
           channel.NumCbsInCurrentSF == 0x506 && stats.BasePlpsPreRsGood == 0x80000000 + iFirst &&
           stats.BasePlpsPostRsErasures == 0x80000003 + iFirst &&
           stats.BaseCbsPreRsGood == 0x80000008 + iFirst && stats.EnhCbsPostRsErasures == 0x8000000F + iFirst;
}

TEST_F(FtmBroadcastTest, RecordsAreCompleteOrUnchanged) {
    mftypes_active_mlc_info aChannels[2];
    mftypes_active_mlc_info& channel = aChannels[0];
    mftypes_mlc_dyn_params_type place;
    unsigned char iCount = 2;
    const struct {
        std::string sRequest;
        std::string sAnswer;
        std::function<bool()> read;
        std::function<bool()> isRead;
    } cases[] = {
        {"4B 2B 28 00", "4B 2B 28 00 02" + ChannelBytes(1) + ChannelBytes(0x40),
         [&] { return m_diag.MFLO_GET_ACTIVE_MLC_LIST(iCount, aChannels); },
         [&] { return IsChannel(aChannels[0], 1) && IsChannel(aChannels[1], 0x40); }},
        {"4B 2B 0C 00 02 03", "4B 2B 0C 00" + ChannelBytes(1),
         [&] { return m_diag.MFLO_GET_MLC_INFO(2, 3, &channel); }, [&] { return IsChannel(channel, 1); }},
        {"4B 2B 0E 00 02 03", "4B 2B 0E 00" + ChannelBytes(1).substr(18),
         [&] { return m_diag.MFLO_GET_MLC_PLP_STAT_DYN_PARAMS(2, 3, &channel.PlpStats); },
         [&] { return channel.PlpStats.EnhCbsPostRsErasures == 0x80000010; }},
        {"4B 2B 12 00 02 03", "4B 2B 12 00 01 03 02 05 04 07 06 08 09 0B 0A 0D 0C",
         [&] { return m_diag.MFLO_GET_MLC_DYN_PARAMS(2, 3, &place); },
         [&] {
             return place.MlcID == 1 && place.BaseFFTaddress == 0x203 && place.SymbolOffset == 0x405 &&
                    place.StartSlotOffset == 0x607 && place.MinSlot == 8 && place.MaxSlot == 9 &&
                    place.NumSlots == 0xA0B && place.NumCodeBlocks == 0xC0D;
         }},
    };
    for (const auto& test : cases) {
        const Bytes answer = Hex(test.sAnswer);
        std::memset(&channel, 0x77, sizeof channel);
        std::memset(&place, 0x77, sizeof place);
        m_phone.Answer("", Bytes(answer.begin(), answer.end() - 1));
        EXPECT_FALSE(test.read()) << test.sRequest;
        EXPECT_TRUE(channel.Base_FFT_Address == 0x7777 && channel.PlpStats.BasePlpsPreRsGood == 0x77777777 &&
                    place.MlcID == 0x77);
        m_phone.phone.ClearRequests();
        m_phone.Answer("", answer);
        EXPECT_TRUE(test.read() && test.isRead()) << test.sRequest;
        EXPECT_EQ(m_phone.Requests(), Lines{test.sRequest});
    }
}

TEST_F(FtmBroadcastTest, SignalStrengthWithSignAndHundredths) {
    const std::pair<const char*, double> cases[] = {{"00 50 00 19", -80.25}, {"01 FF 01 63", 256.99}};
    for (const auto& [sAnswer, dValue] : cases) {
        m_phone.Answer("", Hex(std::string("4B 2B 0D 00 ") + sAnswer));
        double dRssi = 5;
        EXPECT_TRUE(m_diag.MFLO_GET_RSSI_VALUE(dRssi));
        EXPECT_DOUBLE_EQ(dRssi, dValue);
    }
    m_phone.Answer("", Hex("4B 2B 0D 00 00 50 00"));
    double dRssi = 5;
    EXPECT_FALSE(m_diag.MFLO_GET_RSSI_VALUE(dRssi));
    EXPECT_EQ(dRssi, 5);
    EXPECT_TRUE(m_log.Has(LOG_RET, "QLIB_MFLO_GET_RSSI_VALUE( pdRSSI = -80.25 )"));
}

} // namespace
