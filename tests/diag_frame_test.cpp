// The buffer pair and the headers of factory-test requests, as bytes.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "diag/command_frame.h"

namespace {

using Bytes = std::vector<unsigned char>;

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
    EXPECT_TRUE(reader.Take(iSigned));
    EXPECT_EQ(iSigned, -2);
    DWORD iWord = 0;
    EXPECT_TRUE(reader.Take(iWord));
    EXPECT_EQ(iWord, 0x05040302U);
    EXPECT_FALSE(reader.Take(iWord));
    EXPECT_EQ(iWord, 0x05040302U);
    unsigned char iByte = 0;
    EXPECT_TRUE(reader.Take(iByte));
    EXPECT_EQ(iByte, 1);
    EXPECT_TRUE(reader.Take(iByte));
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
    const struct {
        size_t iOffset;
        const char* sText;
        size_t iLength;
    } cases[] = {{4, "ab", 2}, {7, "c", 1}, {8, "", 0}, {100, "", 0}, {0, "\1\2", 6}};
    for (const auto& entry : cases) {
        EXPECT_EQ(reader.TextAt(entry.iOffset, sText, sizeof sText), entry.iLength);
        EXPECT_STREQ(sText, entry.sText);
    }
}

TEST(CommandFrame, BuildsTheHeaders) {
    DiagConnection connection(99);
    CommandFrame frame(connection);
    const unsigned char aData[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const struct {
        FTM_Command_Type eType;
        std::function<void()> build;
        Bytes request;
    } cases[] = {
        {FTM_COMMAND_75, [&] { frame.FormatFTMHeader(); }, {75, 11, 1, 0}},
        {FTM_COMMAND_59, [&] { frame.FormatFTMHeader(); }, {59, 0x77, 0, 0, 0}},
        {FTM_COMMAND_75,
         [&] { frame.FormatExtendedFTMHeader(0x102, 3, 4); },
         {75, 11, 1, 0, 2, 1, 3, 0, 4, 0}},
        {FTM_COMMAND_75,
         [&] { frame.FormatExtendedFTMHeader(13, 1, 2, 3); },
         {75, 11, 13, 0, 1, 0, 2, 0, 3, 0}},
        {FTM_COMMAND_59, [&] { frame.FormatSubsystemDiagHeader(19, 0x0203); }, {59, 19, 3, 2}},
        {FTM_COMMAND_75, [&] { frame.FormatBT_FTMHeader(4, 5); }, {75, 11, 4, 0, 4, 0, 5, 0, 0, 0}},
        {FTM_COMMAND_75, [&] { frame.FormatCDMA2000_FTMHeader(111); }, {75, 11, 7, 0, 111, 0, 23, 0, 0, 0}},
        {FTM_COMMAND_75, [&] { frame.FormatCDMA2000_FTMHeader(101); }, {75, 11, 7, 0, 101, 0, 0, 0, 0, 0}},
        {FTM_COMMAND_59,
         [&] { frame.BeginRequest().U8(1), frame.FormatCDMA2000_FTMHeader(100); },
         {1, 59, 100, 0, 0, 0}},
        {FTM_COMMAND_75, [&] { frame.FormatEVDO_FTMHeader(126); }, {75, 11, 8, 0, 126, 0, 42, 0, 0, 0}},
        {FTM_COMMAND_59, [&] { frame.BeginRequest().U8(1), frame.FormatEVDO_FTMHeader(126); }, {1}},
        {FTM_COMMAND_75, [&] { frame.FormatAGPS_FTMHeader(5); }, {75, 11, 10, 0, 5, 0, 0, 0, 0, 0}},
        {FTM_COMMAND_75, [&] { frame.FormatPMIC_FTMHeader(5, 6); }, {75, 11, 11, 0, 5, 0, 0, 0, 0, 0, 6}},
        {FTM_COMMAND_75, [&] { frame.FormatAudioFTMHeader(1, 2, 3); }, {75, 11, 14, 0, 1, 0, 2, 0, 3, 0}},
        {FTM_COMMAND_75, [&] { frame.FormatCameraFTMHeader(1, 2, 3); }, {75, 11, 15, 0, 1, 0, 2, 0, 3, 0}},
        {FTM_COMMAND_75, [&] { frame.FormatRF_CommonHeader(1, 2, 3); }, {75, 11, 20, 0, 1, 0, 2, 0, 3, 0}},
        {FTM_COMMAND_75, [&] { frame.FormatMF_DiagHeader(9); }, {75, 43, 9}},
        {FTM_COMMAND_75,
         [&] { frame.FormatGSDI_DiagHeader(1, 86, 3, 4, aData); },
         {0x80, 33, 72, 0, 1, 0, 0, 0, 86, 0,  0,  0,  3,  4,  1,
          2,    3,  4,  5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}},
        {FTM_COMMAND_75,
         [&] { frame.FormatGSDI_DiagHeader(1, 86, 3, 0, aData); },
         {0x80, 33, 72, 0, 1, 0, 0, 0, 86, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const auto& entry : cases) {
        frame.SetCommandType(entry.eType);
        entry.build();
        PacketBuffer& buffer = frame.Buffer();
        EXPECT_EQ(Bytes(buffer.RequestBytes(), buffer.RequestBytes() + buffer.RequestLength()),
                  entry.request);
    }
}

} // namespace
