// Lists, records and signal strength of the broadcast receiver.
#include <cstring>

#include "ftm_rows.h"

namespace {

using FtmBroadcastTest = FtmRowsTest;

std::string Text(const mftypes_active_flow_info& flow) {
    std::ostringstream text;
    text << std::hex << flow.FlowID << ':' << +flow.MlcID << +flow.StreamID << +flow.StreamUsesBothLayers
         << +flow.ByteInterleaveEnabled << +flow.BindingType << +flow.System;
    return text.str();
}

TEST_F(FtmBroadcastTest, FlowListIsWholeOrUntouched) {
    const std::string sFirst = " 56 34 12 01 02 03 04 05 06";
    const std::string sSecond = " FF FF FF 06 05 04 03 02 01";
    const struct {
        unsigned char iRoom;
        std::string sAnswer;
        const char* sOutcome;
    } cases[] = {
        {2, "02" + sFirst + sSecond, "true 2 123456:123456 ffffff:654321"},
        {2, "01" + sFirst, "true 1 123456:123456 7:000000"},
        {2, "00", "true 0 7:000000 7:000000"},
        {1, "03" + sFirst + sSecond + sFirst, "true 3 7:000000 7:000000"}, // more than there is room for
        {2, "02" + sFirst + " FF FF FF 06 05 04 03 02", "false 2 7:000000 7:000000"},
        {255, "FF" + sFirst + sSecond, "false 255 7:000000 7:000000"}, // more than the answer holds
        {2, "", "false 2 7:000000 7:000000"},
    };
    for (const auto& test : cases) {
        m_phone.Answer("4B 2B 0B 00", Hex("4B 2B 0B 00 " + test.sAnswer));
        mftypes_active_flow_info aFlows[2] = {{7, 0, 0, 0, 0, 0, 0}, {7, 0, 0, 0, 0, 0, 0}};
        unsigned char iCount = test.iRoom;
        const bool bResult = m_diag.MFLO_GET_BOUND_FLOW_LIST(iCount, aFlows);
        EXPECT_EQ((bResult ? "true " : "false ") + std::to_string(iCount) + " " + Text(aFlows[0]) + " " +
                      Text(aFlows[1]),
                  test.sOutcome);
    }
    m_log.Clear();
    m_phone.Answer("4B 2B 0B 00", Hex("4B 2B 0B 00 01" + sFirst));
    mftypes_active_flow_info flow;
    unsigned char iCount = 1;
    EXPECT_TRUE(m_diag.MFLO_GET_BOUND_FLOW_LIST(iCount, &flow));
    EXPECT_EQ(m_log.Of(LOG_RET),
              (std::vector<std::string>{"\t\t pActiveFlowInfoArray[0]", "\t\t\t FlowID = 1193046",
                                        "\t\t\t MlcID = 1", "\t\t\t StreamID = 2",
                                        "\t\t\t StreamUsesBothLayers = 3", "\t\t\t ByteInterleaveEnabled = 4",
                                        "\t\t\t BindingType = 5", "\t\t\t System = 6"}));
}

/// A channel's bytes and statistics: six, then sixteen counters that count up from iFirst.
Bytes ChannelBytes(unsigned char iFirst) {
    Bytes bytes = {0x02, 0x01, 0x03, 0x04, 0x06, 0x05};
    for (unsigned char i = 0; i < 16; ++i)
        bytes.insert(bytes.end(), {static_cast<uint8_t>(iFirst + i), 0, 0, 0x80});
    return bytes;
}

bool IsChannel(const mftypes_active_mlc_info& channel, DWORD iFirst) {
    const mftypes_mlc_plp_stats_type& stats = channel.PlpStats;
    return channel.Base_FFT_Address == 0x102 && channel.TransmitMode == 3 && channel.OuterCode == 4 &&
           channel.NumCbsInCurrentSF == 0x506 && stats.BasePlpsPreRsGood == 0x80000000 + iFirst &&
           stats.BasePlpsPostRsErasures == 0x80000003 + iFirst &&
           stats.EnhPlpsPreRsGood == 0x80000004 + iFirst && stats.BaseCbsPreRsGood == 0x80000008 + iFirst &&
           stats.EnhCbsPostRsErasures == 0x8000000F + iFirst;
}

TEST_F(FtmBroadcastTest, ChannelList) {
    Bytes answer = Hex("4B 2B 28 00 02");
    for (const unsigned char iFirst : {1, 0x40}) {
        const Bytes channel = ChannelBytes(iFirst);
        answer.insert(answer.end(), channel.begin(), channel.end());
    }
    mftypes_active_mlc_info aChannels[2] = {};
    unsigned char iCount = 2;
    m_phone.Answer("4B 2B 28 00", answer);
    EXPECT_TRUE(m_diag.MFLO_GET_ACTIVE_MLC_LIST(iCount, aChannels));
    EXPECT_TRUE(IsChannel(aChannels[0], 1) && IsChannel(aChannels[1], 0x40));
    EXPECT_TRUE(m_log.Has(LOG_RET, "\t\t pActiveMlcInfoArray[1]"));
}

TEST_F(FtmBroadcastTest, BroadcastRecordsAreWholeOrUntouched) {
    mftypes_active_mlc_info channel;
    mftypes_mlc_dyn_params_type place;
    const Bytes bytes = ChannelBytes(1);
    const struct {
        const char* sRequest;
        Bytes record;
        std::function<bool()> read;
        std::function<bool()> isRead;
    } cases[] = {
        {"4B 2B 0C 00 02 03", bytes, [&] { return m_diag.MFLO_GET_MLC_INFO(2, 3, &channel); },
         [&] { return IsChannel(channel, 1); }},
        {"4B 2B 0E 00 02 03",
         {bytes.begin() + 6, bytes.end()},
         [&] { return m_diag.MFLO_GET_MLC_PLP_STAT_DYN_PARAMS(2, 3, &channel.PlpStats); },
         [&] { return channel.PlpStats.EnhCbsPostRsErasures == 0x80000010; }},
        {"4B 2B 12 00 02 03", Hex("01 03 02 05 04 07 06 08 09 0B 0A 0D 0C"),
         [&] { return m_diag.MFLO_GET_MLC_DYN_PARAMS(2, 3, &place); },
         [&] {
             return place.MlcID == 1 && place.BaseFFTaddress == 0x203 && place.SymbolOffset == 0x405 &&
                    place.StartSlotOffset == 0x607 && place.MinSlot == 8 && place.MaxSlot == 9 &&
                    place.NumSlots == 0xA0B && place.NumCodeBlocks == 0xC0D;
         }},
    };
    for (const auto& test : cases) {
        Bytes answer = Hex(std::string(test.sRequest).substr(0, 11));
        const size_t iHeader = answer.size();
        answer.insert(answer.end(), test.record.begin(), test.record.end());
        const Bytes untouched(sizeof channel, 0x77);
        std::memset(&channel, 0x77, sizeof channel);
        std::memset(&place, 0x77, sizeof place);
        for (size_t iSize = 1; iSize < answer.size(); ++iSize) {
            m_phone.Answer("", Bytes(answer.begin(), answer.begin() + static_cast<long>(iSize)));
            EXPECT_FALSE(test.read()) << test.sRequest << " " << iSize - iHeader;
        }
        EXPECT_EQ(std::memcmp(&channel, untouched.data(), sizeof channel), 0);
        EXPECT_EQ(std::memcmp(&place, untouched.data(), sizeof place), 0);
        m_phone.phone.ClearRequests();
        m_phone.Answer("", answer);
        EXPECT_TRUE(test.read());
        EXPECT_TRUE(test.isRead()) << test.sRequest;
        EXPECT_EQ(m_phone.Requests(), std::vector<std::string>{test.sRequest});
    }
}

TEST_F(FtmBroadcastTest, SignalStrengthHasASignAndHundredths) {
    const struct {
        const char* sAnswer;
        bool bResult;
        double dValue;
    } cases[] = {{"4B 2B 0D 00 00 50 00 19", true, -80.25},
                 {"4B 2B 0D 00 01 FF 01 63", true, 256.99},
                 {"4B 2B 0D 00 00 00 00 00", true, 0},
                 {"4B 2B 0D", false, 5}};
    for (const auto& test : cases) {
        m_phone.Answer("", Hex(test.sAnswer));
        double dRssi = 5;
        EXPECT_EQ(m_diag.MFLO_GET_RSSI_VALUE(dRssi), test.bResult) << test.sAnswer;
        EXPECT_DOUBLE_EQ(dRssi, test.dValue);
    }
    EXPECT_TRUE(m_log.Has(LOG_RET, "QLIB_MFLO_GET_RSSI_VALUE( pdRSSI = -80.25 )"));
}

} // namespace
