// The phone's messages as text: event names, format strings from the phone, truncated packets.
#include <algorithm>
#include <cstring>
#include <memory>

#include "eventually.h"
#include "link/connection_access.h"
#include "link/crc16.h"
#include "link/event_dispatcher.h"
#include "link/event_names.h"
#include "link/extended_message.h"
#include "link/extended_message_text.h"
#include "link/format_expansion.h"
#include "phone_fixture.h"

namespace {

std::string EventName(int iId) {
    char sName[kEventTextSize];
    GetEventText(iId, sName);
    return sName;
}

TEST(EventNames, EveryRangeBeginsAndEndsCorrectly) {
    const std::tuple<int, int, const char*, const char*> runs[] = {
        {0, 0, "EVENT_DROP_ID", "EVENT_DROP_ID"},
        {256, 355, "EVENT_BAND_CLASS_CHANGE", "EVENT_HDR_OVHD_IGNORED_SP_MSG_DIFF_SEC_ID"},
        {356, 455, "EVENT_HDR_OVHD_SP_MSG_RX", "EVENT_RRC_MESSAGE_SENT"},
        {456, 555, "EVENT_RRC_MESSAGE_RECEIVED", "EVENT_GSM_RATSCCH_ACK_ACT_TIMER_EXPIRY"},
        {556, 646, "EVENT_GSM_AMR_CMC_TURNAROUND_TIME", "EVENT_BREW_ERROR"},
        {647, 655, "EVENT_BREW_UNDEFINED_647", "EVENT_BREW_UNDEFINED_655"},
        {656, 660, "EVENT_BREW_USER_656", "EVENT_BREW_APP_FORMITEM_STACK_CHANGE"},
        {661, 895, "EVENT_BREW_UNDEFINED_661", "EVENT_BREW_UNDEFINED_895"},
        {896, 945, "EVENT_WCDMA_PS_DATA_RATE", "EVENT_QTV_VDEC_DIAG_STATUS"},
        {946, 967, "EVENT_QTV_UNDEFINED_946", "EVENT_QTV_UNDEFINED_967"},
        {968, 977, "EVENT_DS_SETS_ARM_CLOCK_FASTER", "EVENT_SECCRYPT_CMD"},
        {978, 981, "EVENT_SEC_RESERVED_978", "EVENT_SEC_RESERVED_981"},
        {982, 995, "EVENT_ARM_CLK_FREQUENCY_CHANGE", "EVENT_CM_FWD_AOC_IND"},
        {996, 1045, "EVENT_PZID_ID", "EVENT_GSDI_PERM_DISBALE_FEATURE_IND"},
        {1049, 1050, "EVENT_HDR_AMAC_PERSISTENCE_FAILED", "EVENT_HDR_AMAC_PERSISTENCE_PASSED"},
        {1071, 1133, "EVENT_CM_LCS_MOLR_CONF", "EVENT_LINUX_APP_STOP"},
        {2049, 2111, "EVENT_T_HDR_STATE", "EVENT_T_HDR_BCMCS_FLOW_STATE_ENTRY"},
    };
    std::vector<bool> named(0x10001);
    for (const auto& [iFirst, iLast, sFirst, sLast] : runs) {
        EXPECT_EQ(EventName(iFirst), sFirst);
        EXPECT_EQ(EventName(iLast), sLast);
        std::fill(named.begin() + iFirst, named.begin() + iLast + 1, true);
    }
    EXPECT_EQ(EventName(-1), "EVENT_NOT_FOUND");
    for (int iId = 0; iId <= 0x10000; ++iId)
        EXPECT_EQ(EventName(iId) != "EVENT_NOT_FOUND", named[iId]) << iId;
}

std::string Expand(const char* sFormat, std::vector<DWORD> arguments, size_t iCapacity = 500) {
    std::vector<char> out(iCapacity, 'z');
    const size_t iLength = ExpandFormat(sFormat, arguments, out);
    EXPECT_EQ(std::strlen(out.data()), iLength);
    return out.data();
}

TEST(FormatExpansion, IntegersAreFormattedAsByTheCLibrary) {
    for (const char* sFlags : {"", "-", "+", " ", "0", "#", "-0", "+ ", "+0", "#0", "-#"})
        for (const char* sWidth : {"", "1", "7", "20"})
            for (const char* sPrecision : {"", ".", ".0", ".1", ".9"})
                for (const char cLetter : std::string("diuxXo"))
                    for (const int iValue : {0, 1, -1, 255, 123456789, -2147483647 - 1}) {
                        const auto sFormat = std::string("<%") + sFlags + sWidth + sPrecision + cLetter;
                        char sExpected[100];
                        snprintf(sExpected, sizeof sExpected, sFormat.c_str(), iValue);
                        EXPECT_EQ(Expand(sFormat.c_str(), {static_cast<DWORD>(iValue)}), sExpected)
                            << sFormat << " of " << iValue;
                    }
}

TEST(FormatExpansion, UnsupportedConversionsAndExcessiveWidths) {
    const std::pair<const char*, std::string> cases[] = {
        {"", ""},
        {"100%% of %ld and %hhx", "100% of 65 and a"},
        {"%c%3c|%-3c|%c", "A  .|.  |%c"}, // the fourth has no argument
        {"%s of %d", "%s of 10"},         // skips an argument, which is an address in the phone
        {"%n%p%f|%d", "%n%p%f|%d"},
        {"%-08.3lf%d", "%-08.3lf10"},
        {"%y %d", "%y 65"},
        {"cut %", "cut %"},
        {"cut %-08.3l", "cut %-08.3l"},
        {"%*d", std::string(63, ' ') + "10"},
        {"%.*d", std::string(63, '0') + "10"},
        {"%1$d", "%1$d"},
        {"\x80 %\xFF", "\x80 %\xFF"},
    };
    for (const auto& [sFormat, sExpected] : cases)
        EXPECT_EQ(Expand(sFormat, {65, 10, static_cast<DWORD>(-3)}), sExpected) << sFormat;
    EXPECT_EQ(Expand("%*d|", {static_cast<DWORD>(-5), 7}), "7    |");
    EXPECT_EQ(Expand("%.*d|", {static_cast<DWORD>(-5), 7}), "7|");
    EXPECT_EQ(Expand("%*d", {}), "%*d");
    for (const char* sFormat : {"%99999999999999999999d", "%.99999999999999999999d"})
        EXPECT_EQ(Expand(sFormat, {7}).size(), 100U);
    EXPECT_EQ(Expand("%*d", {0x80000000, 7}).size(), 100U);
    for (size_t iCapacity = 1; iCapacity < 12; ++iCapacity)
        EXPECT_EQ(Expand("ab%5d%s", {7}, iCapacity), std::string("ab    7%s").substr(0, iCapacity - 1));
}

/// Returns the packet with its FCS, as it is received.
Bytes WithFcs(Bytes packet) {
    const unsigned iFcs = ComputeCrc16(packet.data(), static_cast<unsigned short>(packet.size() * 8));
    packet.push_back(static_cast<uint8_t>(iFcs));
    packet.push_back(static_cast<uint8_t>(iFcs >> 8));
    return packet;
}

/// Returns an extended debug message: line 0x0102, subsystem 5, mask 6, the arguments, and the texts
/// unchanged.
Bytes Message(uint8_t iCount, std::initializer_list<uint32_t> arguments, const std::string& sTexts) {
    Bytes packet = Hex("79 02 00 04 01 02 03 04 05 06 07 08 02 01 05 00 06 00 00 00");
    packet[2] = iCount;
    const Bytes rest = Packet("", arguments, sTexts);
    packet.insert(packet.end(), rest.begin(), rest.end());
    return packet;
}

using std::string_literals::operator""s;

TEST(ExtendedMessages, TextsFollowTheArguments) {
    const std::string sLong(200, 'x');
    const std::tuple<const char*, Bytes, std::vector<DWORD>, std::string, std::string> cases[] = {
        {"none", Message(0, {}, "fmt\0file.c\0"s), {0, 0, 0}, "fmt", "file.c"},
        {"two", Message(2, {7, 8}, "fmt\0file.c\0"s), {7, 8, 0}, "fmt", "file.c"},
        {"five", Message(5, {1, 2, 3, 4, 5}, "fmt\0file.c\0"s), {1, 2, 3}, "fmt", "file.c"},
        {"count beyond the packet", Message(90, {1, 2, 3}, "fmt\0file.c\0"s), {1, 2, 3}, "fmt", "file.c"},
        {"no zero at the end", Message(1, {1}, "fmt\0file.c"s), {1, 0, 0}, "fmt", "file.c"},
        {"no file", Message(1, {1}, "fmt"), {1, 0, 0}, "fmt", ""},
        {"cut in an argument", Message(2, {1}, "\x02"), {1, 0, 0}, "", ""},
        {"long", Message(0, {}, sLong + '\0' + sLong), {0, 0, 0}, sLong.substr(0, 99), sLong.substr(0, 99)},
    };
    for (const auto& [sWhat, plain, arguments, sFormat, sFileName] : cases)
        for (const Bytes& packet : {plain, WithFcs(plain)}) {
            ExtendedMessage message;
            ASSERT_TRUE(ParseExtendedMessage(std::span(packet), message)) << sWhat;
            EXPECT_TRUE(std::ranges::equal(message.aArgs, arguments)) << sWhat;
            EXPECT_EQ(message.sFormat, sFormat) << sWhat;
            EXPECT_EQ(message.sFileName, sFileName) << sWhat;
            EXPECT_EQ(message.iNumArgs, plain[2]);
            EXPECT_EQ(message.iLineNumber, 0x0102);
            EXPECT_EQ(message.iSubsystemID, 5);
            EXPECT_EQ(message.iSubsystemMask, 6U);
            EXPECT_EQ(Bytes(message.aTimeStamp, message.aTimeStamp + 8), Hex("01 02 03 04 05 06 07 08"));
        }
}

TEST(ExtendedMessages, TruncatedPacketIsNotReadBeyondItsEnd) {
    const Bytes whole = Message(3, {1, 2, 3}, "fmt\0file.c\0"s);
    for (size_t iSize = 0; iSize <= whole.size(); ++iSize) {
        const auto pExact = std::make_unique<unsigned char[]>(iSize);
        std::copy_n(whole.begin(), iSize, pExact.get());
        ExtendedMessage message;
        message.iLineNumber = 99;
        EXPECT_EQ(ParseExtendedMessage(std::span(pExact.get(), iSize), message), iSize > 0);
        EXPECT_EQ(message.iLineNumber, iSize == 0 ? 99 : iSize < 14 ? 0 : 0x0102);
    }
    // Without a length, the zero of the second text ends the packet.
    const auto pExact = std::make_unique<unsigned char[]>(whole.size());
    std::copy(whole.begin(), whole.end(), pExact.get());
    ExtendedMessage message;
    ASSERT_TRUE(ParseExtendedMessage(pExact.get(), message));
    EXPECT_STREQ(message.sFileName, "file.c");
    pExact[0] = 0x1F;
    EXPECT_FALSE(ParseExtendedMessage(pExact.get(), message));
}

TEST(ExtendedMessages, DeliveredPacketsAreFollowedByZeros) {
    struct Reader : CQLibEvents_Listener {
        void messageReceived(LONG, unsigned char* pPacket, unsigned int, LONG, short, DWORD) override {
            bParsed = ParseExtendedMessage(pPacket, message) && message.sFormat[0] == '\0';
        }
        ExtendedMessage message;
        std::atomic<bool> bParsed{false};
    } reader;
    const Bytes packet = Message(255, {1, 2, 3}, "fmt\0file.c\0"s);
    CQLibEventDispatcher dispatcher;
    dispatcher.AddListener(&reader, nullptr);
    dispatcher.PostEvent(static_cast<DWORD>(packet.size()), packet.data(), 0, 0, 0, 0);
    EXPECT_TRUE(Eventually([&] { return reader.bParsed.load(); }));
    dispatcher.Stop();
}

/// A connection that receives packets directly from the test.
class MessagesTest : public PhoneTest {
protected:
    MessagesTest() { m_access.SetPhoneLogging(true); }

    /// Passes a packet to the connection as if it had been received.
    void Receive(Bytes packet) {
        packet = WithFcs(packet);
        m_access.ReplayPacket(packet);
    }

    const ConnectionAccess m_access{m_diag};
};

TEST_F(MessagesTest, DebugMessagesAndEventsAreLoggedAsText) {
    const std::pair<Bytes, Lines> cases[] = {
        {Message(2, {7, 0xFF}, "a=%d b=%#x\0ui.c\0"s), {"Debug Msg: 5.6 - ui.c-258\ta=7 b=0xff"}},
        {Message(1, {7}, "%d %d %d %d\0ui.c"s), {"Debug Msg: 5.6 - ui.c-258\t7 0 0 %d"}},
        {Hex("79"), {"Debug Msg: 0.0 - -0\t"}},
        {Hex("60 05 00 00 01 00"), {"Event ID: 256, EVENT_BAND_CLASS_CHANGE"}},
        {Hex("60 05 00 FF FF"), {"Event ID: 65535, EVENT_NOT_FOUND"}},
        {Hex("60 05 00 01"), {}},    // no complete id
        {Hex("60 00 00 00 01"), {}}, // a response
        {Hex("10 00 04 00 04 00 01 00"), {}},
    };
    m_diag.SetLogFlags(LOG_ASYNC);
    for (const auto& [packet, lines] : cases) {
        m_log.Clear();
        Receive(packet);
        EXPECT_EQ(m_log.Of(LOG_ASYNC), lines) << handset::ToHex(packet);
    }
    m_access.SetPhoneLogging(false); // dropped from the queue, but still logged
    m_log.Clear();
    m_phone.phone.Send(cases[0].first);
    EXPECT_TRUE(Eventually([&] { return m_log.Of(LOG_ASYNC) == cases[0].second; }));
    m_diag.SetLogFlags(LOG_IO);
    m_log.Clear();
    Receive(cases[0].first);
    EXPECT_EQ(m_log.Of(LOG_ASYNC), Lines());
}

/// Returns a legacy debug message whose file name fills its field.
Bytes LegacyMessage() {
    Bytes packet = Packet("1F 02 01 04 03 02 01 AA AA AA AA 07", {},
                          "thirteen_c.ch\x10\x01"
                          "code %d\0"s);
    packet.resize(67, 'z');
    const Bytes codes = Packet("", {1, 0xFFFFFFFF, 3});
    packet.insert(packet.end(), codes.begin(), codes.end());
    return packet;
}

std::string Joined(const Lines& lines) {
    std::string sAll;
    for (const std::string& sLine : lines)
        sAll += sLine;
    return sAll;
}

TEST_F(MessagesTest, TextOfEachKindOfPacket) {
    const std::string sRecord = "Log Message 0x117C detected, length 20 bytes\n\n";
    const std::string sShown = "\n" + sRecord + "\nFTM Log Code 2 found\n";
    const auto FtmRecord = [](const std::string& sKind) {
        return Hex("10 00 14 00 14 00 7C 11 01 02 03 04 05 06 07 08 " + sKind + " 2A 01");
    };
    const std::string sLegacy =
        "\nStreaming Message detected\nQUANTITY: 258\nDROP_CNT: 0x1020304\nMESSAGE_LEVEL: 0x7\nFILE_NAME: "
        "thirteen_c.ch"
        "\nLINE_NUMBER: 272\nFMT_STRING: code %d\nCODE1: 1\nCODE2: -1\nCODE3: 3\n\n";
    // The packet, the text of its log lines, and its text on standard output.
    const std::tuple<Bytes, std::string, std::string> cases[] = {
        {Hex("10 00"), "Log Message 0x0 detected, length 0 bytes\n\n",
         "\nLog Message 0x0 detected, length 0 bytes\n\n"},
        {FtmRecord("00 00"), sRecord, sShown + "LOG_FTM2_LOG_PRINTF"},
        {FtmRecord("05 10"), sRecord, sShown + "LOG_FTM2_LOG_GSM_BER: 42"},
        {FtmRecord("06 10"), sRecord, sShown + "LOG_FTM2_LOG_WCDMA_BER"},
        {FtmRecord("07 10"), sRecord, sShown + " Type not known"},
        {LegacyMessage(), sLegacy, sLegacy},
        {Hex("60 05 00 00 01"), "\nEvent Detected.", "\nEvent detected"},
        {Message(1, {9}, "n %d\0a.c\0"s), "Debug Msg: 5.6 - a.c-258\tn 9", "\nDebug Msg: 5.6 - a.c-258\tn 9"},
        {Hex("4B 13 00 00"), "\nWarning: Unknown Type", "\nWarning: Unknown type"},
    };
    m_diag.SetLogFlags(LOG_INF_DEV | LOG_IO);
    for (const auto& [packet, sLog, sStdout] : cases)
        for (const auto& [bToLog, bToStdout] : {std::pair(true, false), {false, true}, {false, false}}) {
            QueueItem item{};
            std::ranges::copy(packet, item.data);
            m_log.Clear();
            testing::internal::CaptureStdout();
            EXPECT_TRUE(
                m_diag.AddUserAsyncLogMessageToTextLog(0x8000 | LOG_IO, item.data, bToLog, bToStdout));
            EXPECT_EQ(testing::internal::GetCapturedStdout(), bToStdout ? sStdout : "");
            EXPECT_EQ(Joined(m_log.Of(0x8000 | LOG_IO)), bToLog ? sLog : "");
        }
    // A truncated packet yields the fields that it holds.
    const Bytes whole = LegacyMessage();
    for (size_t iSize = 2; iSize < whole.size(); ++iSize) {
        Receive(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(iSize)));
        m_log.Clear();
        EXPECT_FALSE(m_diag.DumpAsyncMessageToTextLog(LOG_IO, false, true, false));
        ASSERT_EQ(m_log.Of(LOG_IO).size(), 11u);
        EXPECT_EQ(m_log.Of(LOG_IO)[9], "\nCODE3: 0") << iSize;
    }
}

TEST_F(MessagesTest, DumpingEmptiesThePhoneLogQueue) {
    Receive(Hex("60 05 00 00 01"));
    Receive(Hex("10 00 0C 00 0C 00 01 10"));
    Receive(Hex("4B 13 00 00")); // a response stays in its queue
    m_diag.SetLogFlags(LOG_RET);
    m_log.Clear();
    testing::internal::CaptureStdout();
    EXPECT_FALSE(m_diag.DumpAsyncMessageToTextLog(LOG_RET, true, true, true));
    const std::string sStdout = testing::internal::GetCapturedStdout();
    const Lines lines = m_log.Of(LOG_RET);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_TRUE(lines[0].starts_with("ASYNC Raw DATA: 60 05 00 00 01 "));
    EXPECT_EQ(lines[1], "\nEvent Detected.");
    EXPECT_EQ(sStdout, lines[0] + "\nEvent detected" + lines[2] +
                           "\nLog Message 0x1001 detected, length 12 bytes\n\n");
    EXPECT_TRUE(m_access.PhoneLogQueue().IsEmpty());
    EXPECT_FALSE(m_access.CommandResponseQueue().IsEmpty());
    EXPECT_FALSE(m_diag.DumpAsyncMessageToTextLog(LOG_RET, true, true, true));
    ExtendedMessage message;
    EXPECT_FALSE(m_diag.DIAG_ParseExtendedMessage(nullptr, &message));
    EXPECT_TRUE(m_diag.AddUserAsyncLogMessageToTextLog(LOG_RET, nullptr, true, true));
}

} // namespace
