// The packet buffer and the headers of factory-test requests, as bytes.
#include "diag/command_frame.h"
#include "diag_fixture.h"

namespace {

TEST(PacketBuffer, FillsToItsLimitAndSkipsFieldsBeyondIt) {
    PacketBuffer buffer;
    buffer.Request().Bytes(Bytes(4091, 1)).U32(0x04030201);
    EXPECT_EQ(buffer.RequestLength(), 4095);
    EXPECT_TRUE(buffer.Request().Complete());
    buffer.Clear();
    buffer.Request().Bytes(Bytes(4093, 1)).U32(1).U16(0x0201).U8(1);
    EXPECT_EQ(buffer.RequestLength(), 4095);
    EXPECT_FALSE(buffer.Request().Complete());
    EXPECT_EQ(buffer.RequestBytes()[4094], 2);
}

TEST(CommandFrame, BuildsTheHeaders) {
    DiagConnection connection(99);
    CommandFrame frame(connection);
    const unsigned char aData[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const struct {
        FTM_Command_Type eType;
        std::function<void()> build;
        std::string sRequest;
    } cases[] = {
        {FTM_COMMAND_59, [&] { frame.FormatFTMHeader(); }, "3B 77 00 00 00"},
        {FTM_COMMAND_59, [&] { frame.FormatSubsystemDiagHeader(19, 0x203); }, "3B 13 03 02"},
        {FTM_COMMAND_75, [&] { frame.FormatCDMA2000_FTMHeader(111); }, "4B 0B 07 00 6F 00 17 00 00 00"},
        {FTM_COMMAND_75, [&] { frame.FormatCDMA2000_FTMHeader(101); }, "4B 0B 07 00 65 00 00 00 00 00"},
        {FTM_COMMAND_59, [&] { frame.BeginRequest().U8(1), frame.FormatCDMA2000_FTMHeader(100); },
         "01 3B 64 00 00 00"},
        {FTM_COMMAND_75, [&] { frame.FormatEVDO_FTMHeader(126); }, "4B 0B 08 00 7E 00 2A 00 00 00"},
        {FTM_COMMAND_59, [&] { frame.BeginRequest().U8(1), frame.FormatEVDO_FTMHeader(126); }, "01"},
        {FTM_COMMAND_75, [&] { frame.FormatRF_CommonHeader(1, 2, 3); }, "4B 0B 14 00 01 00 02 00 03 00"},
        {FTM_COMMAND_75, [&] { frame.FormatMF_DiagHeader(9); }, "4B 2B 09"},
        {FTM_COMMAND_75, [&] { frame.FormatGSDI_DiagHeader(1, 86, 3, 4, aData); },
         "80 21 48 00 01 00 00 00 56 00 00 00 03 04 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10"},
    };
    for (const auto& entry : cases) {
        frame.SetCommandType(entry.eType);
        entry.build();
        PacketBuffer& buffer = frame.Buffer();
        EXPECT_EQ(Bytes(buffer.RequestBytes(), buffer.RequestBytes() + buffer.RequestLength()),
                  Hex(entry.sRequest));
    }
}

} // namespace
