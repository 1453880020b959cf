// Playback of text logs: recorded sessions without the phone, and malformed recordings.
#include "link/connection_access.h"
#include "phone_fixture.h"

namespace {

/// Empties a queue and returns its packets in hex.
Lines Take(CQLibMessageQueue& queue) {
    Lines packets;
    QueueItem item;
    while (queue.Pop(&item))
        packets.push_back(handset::ToHex(Bytes(item.data, item.data + item.length)));
    return packets;
}

class PlaybackTest : public testing::Test {
protected:
    PlaybackTest() {
        m_connection.SetPhoneLogging(true);
        m_log.Clear();
    }

    bool Play(const std::string& sContent, bool bKeepLastTwo = true) {
        const std::string sFile = m_folder.Write("log.txt", Bytes(sContent.begin(), sContent.end()));
        return m_diag.StartLogFilePlaybackMode(sFile.c_str(), bKeepLastTwo ? 1 : 0);
    }

    PluggedPhone m_phone;
    LocalFolder m_folder;
    Diag_FTM m_diag{2}; // no phone there
    const ConnectionAccess m_connection{m_diag};
    LogCapture m_log{m_diag, LOG_FN | LOG_RET | LOG_IO};
};

TEST_F(PlaybackTest, OnlyReceivedPacketsAreReplayed) {
    const std::string sLong(60000, 'A');
    std::string sMost;
    for (int i = 0; i < 4096; ++i)
        sMost += "4B ";
    const std::string sSync = "12\t,LOG_IO,SYNC REC--listener--(3 bytes): ";
    const std::string sAsync = "12\t,LOG_IO,ASYNC REC (3 bytes): ";
    const std::tuple<const char*, std::string, Lines, Lines> cases[] = {
        // the expected responses, then the expected log packets
        {"complete", sSync + "4B 0F 00 \n", {"4B 0F 00"}, {}},
        {"Windows line ends", sSync + "4B 0F 00 \r\n" + sSync + "4B 10 \r\n", {"4B 0F 00", "4B 10"}, {}},
        {"no line end", sSync + "4B 0F 00 ", {"4B 0F 00"}, {}},
        {"no trailing blank, lower case", sSync + "4b:0f-00\n", {"4B 0F 00"}, {}},
        {"log records", sAsync + "10 00 04 \n" + sSync + "4B 01 \n", {"4B 01"}, {"10 00 04"}},
        {"response to event control",
         "1\t,LOG_IO,ASYNC REC--listener--(5 bytes): 60 00 00 AA BB \n",
         {"60 00 00 AA BB"},
         {}},
        {"requests", "1\t,LOG_IO,SEND (3 bytes):4B 0F 00 \n1\t,LOG_IO,REC \t4B 0F 00 \n", {}, {}},
        {"bad pairs",
         sSync + "4B 0F 0\n" + sSync + "4B01 02\n" + sSync + "4B 0102\n" + sSync + "4B1300\n",
         {},
         {}},
        {"not hex", sSync + "4B xy 00 \n" + sSync + "\n" + sSync, {}, {}},
        {"too few commas", "SYNC REC--listener--(3 bytes): 4B 0F 00 \n,\n", {}, {}},
        {"too short", ",,ASYNC REC:10 01\n", {}, {}},
        {"just long enough", ",,ASYNC REC: 10 01\n", {}, {"10 01"}},
        {"long", sSync + sLong + "\n" + sLong + sSync + "4B 01 \n" + sSync + "4B 02 \n", {"4B 02"}, {}},
        {"the longest packet", sSync + sMost + "\n", {sMost.substr(0, sMost.size() - 1)}, {}},
        {"longer than a packet", sSync + sMost + "4B \n" + sSync + "4B 01 \n", {"4B 01"}, {}},
        {"binary", std::string("\0\xFF,,\0\r\r\n\x80", 9) + "\n" + sSync + "4B 02 \n", {"4B 02"}, {}},
        {"empty", "", {}, {}},
    };
    for (const auto& [sWhat, sContent, sync, async] : cases) {
        EXPECT_TRUE(Play(sContent)) << sWhat;
        EXPECT_EQ(Take(m_connection.CommandResponseQueue()), sync) << sWhat;
        EXPECT_EQ(Take(m_connection.PhoneLogQueue()), async) << sWhat;
    }
    EXPECT_TRUE(
        Play(sSync + "4B 0F 00 \n" + sSync + "4B 0F \n", false)); // without the last two bytes of each
    EXPECT_EQ(Take(m_connection.CommandResponseQueue()), Lines{"4B"});
}

TEST_F(PlaybackTest, RequestsGetTheRecordedResponsesInOrder) {
    ASSERT_TRUE(
        Play("1\t,LOG_IO,SYNC REC--listener--(3 bytes): 13 0F 00 \n2\t,LOG_IO,SYNC REC--listener--(2 bytes): "
             "4B 02 \n"));
    const unsigned char aRequest[] = {0x4B, 0x13};
    m_log.Clear();
    const std::tuple<unsigned short, unsigned short, Bytes> cases[] = {
        {2, 2, Hex("13 0F EE EE")}, {4, 2, Hex("4B 02 EE EE")}, {4, 0, Hex("EE EE EE EE")}};
    for (const auto& [iCapacity, iExpected, expected] : cases) {
        Bytes buffer(4, 0xEE);
        unsigned short iSize = iCapacity;
        EXPECT_TRUE(m_diag.SendSync(sizeof aRequest, aRequest, &iSize, buffer.data(), 0x4B, 500, 100000));
        EXPECT_EQ(iSize, iExpected);
        EXPECT_EQ(buffer, expected);
    }
    const Lines lines = m_log.Lines();
    ASSERT_EQ(lines.size(), 9U);
    EXPECT_EQ(lines[0], "0x0002 QLIB_SendSync(iRequestSize=2, iTimeout=500)--simulation mode");
    EXPECT_EQ(lines[1], "0x0001 SEND: 4B 13 ");
    EXPECT_EQ(lines[2], "0x0001 SYNC REC--listener--(3 bytes): 13 0F 00 ");
    EXPECT_EQ(lines[8], "0x0001 SYNC REC--listener--(0 bytes): ");
}

TEST_F(PlaybackTest, UnreadableFileChangesNothing) {
    ASSERT_TRUE(Play("1\t,LOG_IO,SYNC REC--listener--(2 bytes): 4B 02 \n"));
    for (const std::string& sFile : {m_folder.Path("missing"), m_folder.Path()}) {
        EXPECT_FALSE(m_diag.StartLogFilePlaybackMode(sFile.c_str(), 0));
        EXPECT_EQ(m_log.Lines().back(), "0x0004 QLIB_StartLogFilePlaybackMode() - Could not open file.");
        EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_StartLogFilePlaybackMode(" + sFile + ", 0)"));
    }
    const unsigned char iRequest = 0x4B;
    unsigned char aResponse[4];
    unsigned short iSize = sizeof aResponse;
    EXPECT_TRUE(m_diag.SendSync(1, &iRequest, &iSize, aResponse, 0x4B, 0, 0));
    EXPECT_EQ(iSize, 2);
}

TEST_F(PlaybackTest, StoppingOrOpeningThePortEndsPlayback) {
    const std::string sLine = "1\t,LOG_IO,SYNC REC--listener--(2 bytes): 00 02 \n";
    const unsigned char iRequest = 0x00;
    unsigned char aResponse[64];
    unsigned short iSize = sizeof aResponse;
    ASSERT_TRUE(Play(sLine));
    EXPECT_TRUE(m_diag.StopLogFilePlaybackMode());
    EXPECT_TRUE(m_connection.CommandResponseQueue().IsEmpty());
    EXPECT_FALSE(m_diag.SendSync(1, &iRequest, &iSize, aResponse, 0, 10, 0)); // no such port
    ASSERT_TRUE(Play(sLine));
    EXPECT_FALSE(m_diag.OpenPort());
    EXPECT_TRUE(m_connection.CommandResponseQueue().IsEmpty());
    EXPECT_FALSE(m_diag.SendSync(1, &iRequest, &iSize, aResponse, 0, 10, 0));
}

/// Returns what a program sees in a session: responses with and without errors, and a file of several blocks.
Lines Session(Diag_FTM& diag, const LocalFolder& folder) {
    Lines seen;
    for (const char* sPath : {"brew/a.bin", "none", "brew"}) {
        DWORD iError = 99, iMode = 0, iSize = 0, iTimes = 0;
        EXPECT_TRUE(diag.EFS2_DIAG_STAT(sPath, iError, iMode, iSize, iTimes, iTimes, iTimes, iTimes));
        seen.push_back(std::to_string(iError) + " " + std::to_string(iSize));
    }
    seen.push_back(std::to_string(diag.DIAG_NV_CNV_DIAG_BACKUP_F())); // has a delayed response
    const std::string sLocal = folder.Path("copy");
    seen.push_back(std::to_string(diag.EFS2_DIAG_READ_FILE(sLocal.c_str(), "brew/a.bin")));
    seen.push_back(handset::ToHex(folder.Read("copy")));
    return seen;
}

TEST_F(PlaybackTest, RecordedSessionReplaysWithoutThePhone) {
    m_phone.AddFile("brew/a.bin", Pattern(5000));
    m_phone.phone.SetChatter(2);
    const std::string sLog = m_folder.Path("session.txt");
    Lines recorded, records;
    {
        Diag_FTM diag(1);
        const ConnectionAccess connection(diag);
        connection.SetPhoneLogging(true);
        ASSERT_TRUE(diag.OpenPort());
        diag.SetLogFlags(LOG_IO | LOG_FN);
        diag.StartLogging(sLog.c_str());
        recorded = Session(diag, m_folder);
        diag.ClosePort();
        records = Take(connection.PhoneLogQueue());
    }
    ASSERT_EQ(recorded.back(), handset::ToHex(Pattern(5000)));
    m_phone.phone.Unplug();
    ASSERT_TRUE(m_diag.StartLogFilePlaybackMode(sLog.c_str(), 0));
    EXPECT_EQ(Session(m_diag, m_folder), recorded);
    EXPECT_TRUE(m_connection.CommandResponseQueue().IsEmpty());
    ASSERT_TRUE(m_diag.StartLogFilePlaybackMode(sLog.c_str(), 1));
    EXPECT_EQ(Take(m_connection.PhoneLogQueue()), records);
    EXPECT_FALSE(records.empty());
}

TEST_F(PlaybackTest, PlaybackOfTheActiveLogStopsAtItsFormerEnd) {
    const std::string sLog = m_folder.Path("own.txt");
    Diag_FTM diag(1);
    ASSERT_TRUE(diag.OpenPort());
    diag.SetLogFlags(LOG_IO);
    diag.StartLogging(sLog.c_str());
    DWORD iError = 0, iValue = 0;
    ASSERT_TRUE(diag.EFS2_DIAG_STAT("none", iError, iValue, iValue, iValue, iValue, iValue, iValue));
    ASSERT_TRUE(diag.StartLogFilePlaybackMode(sLog.c_str(), 1));
    DWORD iWaiting = 0;
    ConnectionAccess(diag).CommandResponseQueue().GetCount(iWaiting);
    EXPECT_EQ(iWaiting, 1u);
}

} // namespace
