// The buffer pair and the headers of factory-test requests, as bytes.
#include "diag_fixture.h"

namespace {

TEST(PacketBuffer, AppendsUpToItsLimitAndLeavesOutWhatDoesNotFit) {
    PacketBuffer buffer;
    EXPECT_EQ(buffer.RequestBytes()[0], 0xAA);
    EXPECT_EQ(buffer.ResponseLength(), 4096);
    buffer.Request().Bytes(Bytes(4091, 1)).U32(0x04030201);
    EXPECT_EQ(buffer.RequestLength(), 4095);
    EXPECT_TRUE(buffer.Request().Complete());
    buffer.Request().U8(9);
    EXPECT_EQ(buffer.RequestLength(), 4095);
    EXPECT_FALSE(buffer.Request().Complete());
    buffer.Clear();
    buffer.Request().Bytes(Bytes(4093, 1)).U32(1).U16(0x0201).U8(1);
    EXPECT_EQ(buffer.RequestLength(), 4095);
    EXPECT_FALSE(buffer.Request().Complete());
    EXPECT_EQ(buffer.RequestBytes()[4094], 2);
}

TEST(ResponseReader, TakesFromTheEndAndFailedTakesDoNotStick) {
    const Bytes response = {0x4B, 1, 2, 3, 4, 5, 0xFE, 0xFF};
    unsigned short iPosition = 0;
    ResponseReader reader(response, iPosition);
    short iSigned = 0;
    DWORD iWord = 0;
    unsigned char iByte = 0;
    EXPECT_TRUE(reader.Take(iSigned) && reader.Take(iWord));
    EXPECT_EQ(iSigned, -2);
    EXPECT_FALSE(reader.Take(iWord));
    EXPECT_EQ(iWord, 0x05040302U);
    EXPECT_TRUE(reader.Take(iByte) && reader.Take(iByte));
    EXPECT_EQ(iByte, 0x4B);
    EXPECT_TRUE(reader.Take(iByte)); // position 0 stands for the end
    EXPECT_EQ(iByte, 0xFF);
    reader.SetPosition(100);
    EXPECT_EQ(iPosition, response.size());
}

TEST(ResponseReader, ReadsAtFixedOffsetsOnlyWhatIsThere) {
    const Bytes response = {1, 2, 3, 4, 'a', 'b', 0, 'c'};
    unsigned short iPosition = 0;
    const ResponseReader reader(response, iPosition);
    DWORD iWord = 7;
    EXPECT_TRUE(reader.U32At(0, iWord));
    EXPECT_EQ(iWord, 0x04030201U);
    EXPECT_FALSE(reader.U32At(5, iWord));
    unsigned short iHalf = 0;
    EXPECT_FALSE(reader.U16At(7, iHalf));
    char sText[3];
    const std::tuple<size_t, const char*, size_t> cases[] = {
        {4, "ab", 2}, {7, "c", 1}, {8, "", 0}, {100, "", 0}, {0, "\1\2", 6}};
    for (const auto& [iOffset, sExpected, iLength] : cases) {
        EXPECT_EQ(reader.TextAt(iOffset, sText, sizeof sText), iLength);
        EXPECT_STREQ(sText, sExpected);
    }
}

TEST(CommandFrame, BuildsTheHeaders) {
    DiagConnection connection(99);
    CommandFrame frame(connection);
    const unsigned char aData[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const std::string sGsdi = "80 21 48 00 01 00 00 00 56 00 00 00 03 ";
    const struct {
        FTM_Command_Type eType;
        std::function<void()> build;
        std::string sRequest;
    } cases[] = {
        {FTM_COMMAND_75, [&] { frame.FormatFTMHeader(); }, "4B 0B 01 00"},
        {FTM_COMMAND_59, [&] { frame.FormatFTMHeader(); }, "3B 77 00 00 00"},
        {FTM_COMMAND_75, [&] { frame.FormatExtendedFTMHeader(0x102, 3, 4); },
         "4B 0B 01 00 02 01 03 00 04 00"},
        {FTM_COMMAND_59, [&] { frame.FormatSubsystemDiagHeader(19, 0x203); }, "3B 13 03 02"},
        {FTM_COMMAND_75, [&] { frame.FormatCDMA2000_FTMHeader(111); }, "4B 0B 07 00 6F 00 17 00 00 00"},
        {FTM_COMMAND_75, [&] { frame.FormatCDMA2000_FTMHeader(101); }, "4B 0B 07 00 65 00 00 00 00 00"},
        {FTM_COMMAND_59, [&] { frame.BeginRequest().U8(1), frame.FormatCDMA2000_FTMHeader(100); },
         "01 3B 64 00 00 00"},
        {FTM_COMMAND_75, [&] { frame.FormatEVDO_FTMHeader(126); }, "4B 0B 08 00 7E 00 2A 00 00 00"},
        {FTM_COMMAND_59, [&] { frame.BeginRequest().U8(1), frame.FormatEVDO_FTMHeader(126); }, "01"},
        {FTM_COMMAND_75, [&] { frame.FormatPMIC_FTMHeader(5, 6); }, "4B 0B 0B 00 05 00 00 00 00 00 06"},
        {FTM_COMMAND_75, [&] { frame.FormatRF_CommonHeader(1, 2, 3); }, "4B 0B 14 00 01 00 02 00 03 00"},
        {FTM_COMMAND_75, [&] { frame.FormatMF_DiagHeader(9); }, "4B 2B 09"},
        {FTM_COMMAND_75, [&] { frame.FormatGSDI_DiagHeader(1, 86, 3, 4, aData); },
         sGsdi + "04 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10"},
        {FTM_COMMAND_75, [&] { frame.FormatGSDI_DiagHeader(1, 86, 3, 0, aData); }, sGsdi + Times(17, "00")},
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
