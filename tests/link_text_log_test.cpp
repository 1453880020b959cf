// The text log: file format, mask, callback.
#include <regex>

#include "link/diag_connection.h"
#include "link/text_log.h"
#include "local_folder.h"

namespace {

class TextLogTest : public testing::Test {
protected:
    TextLogTest() { std::filesystem::current_path(m_folder.Path()); }
    ~TextLogTest() override { std::filesystem::current_path("/"); }

    static std::vector<std::string> FileLines(const char* sName) {
        std::ifstream file(sName);
        std::vector<std::string> lines;
        for (std::string sLine; std::getline(file, sLine);)
            lines.push_back(sLine);
        return lines;
    }

    LocalFolder m_folder;
};

void Collect(unsigned short iSize, unsigned char* pRecord, void* pUserData) {
    EXPECT_EQ(iSize, 1008);
    static_cast<std::vector<TextLogRecord>*>(pUserData)->push_back(
        *reinterpret_cast<TextLogRecord*>(pRecord));
}

TEST_F(TextLogTest, LinesHaveTimeCategoryAndIndent) {
    DataLogFileHandler log;
    log.Start("log.txt", 0xFFFF & ~LOG_FN);
    const unsigned aCategories[] = {LOG_IO,        LOG_RET,    LOG_ASYNC,   LOG_ERR,     LOG_IO_AHDLC,
                                    LOG_ERR_AHDLC, LOG_IO_DEV, LOG_ERR_DEV, 0x8000 | 0u, LOG_RET | LOG_ERR};
    for (const unsigned iCategory : aCategories)
        log.LogMessage(iCategory, "text %d", 7);
    log.LogMessage(LOG_FN, "not in the mask");
    log.CloseLog();
    const char* aExpected[] = {"LOG_IO,Start Log",         "LOG_IO,text 7",         "LOG_RET,text 7",
                               "LOG_ASYNC,text 7",         "LOG_ERR,text 7",        "LOG_IO_AHDLC,  text 7",
                               "LOG_ERR_AHDLC,  text 7",   "LOG_IO_DEV,    text 7", "LOG_ERR_DEV,    text 7",
                               "INVALID LOG LEVEL,text 7", "LOG_RET,text 7",        "LOG_IO,Stop Log"};
    const std::vector<std::string> lines = FileLines("log.txt");
    ASSERT_EQ(lines.size(), std::size(aExpected));
    for (size_t i = 0; i < lines.size(); ++i) {
        EXPECT_TRUE(std::regex_match(lines[i], std::regex("[0-9]+\t,.*"))) << lines[i];
        EXPECT_EQ(lines[i].substr(lines[i].find(',') + 1), aExpected[i]);
    }
}

TEST_F(TextLogTest, StartEmptiesTheFileAndWritesTheDate) {
    DataLogFileHandler log;
    EXPECT_TRUE(log.Start("no/such/folder/log.txt", kDefaultLogFlags)); // no error
    log.LogMessage(LOG_RET, "dropped");
    log.Start("log.txt", kDefaultLogFlags);
    log.LogMessage(LOG_RET, "old");
    log.Start("log.txt", kDefaultLogFlags);
    log.Stop();
    log.LogMessage(LOG_RET, "no longer open");
    const std::vector<std::string> lines = FileLines("log.txt");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(std::regex_match(lines[1], std::regex("0*[0-9]\t,LOG_FN,../../.., ..:..:.."))) << lines[1];
}

TEST_F(TextLogTest, CallbackReceivesEnabledCategoriesWithoutAFile) {
    DataLogFileHandler log;
    std::vector<TextLogRecord> records;
    log.SetCallBack(&records, Collect);
    log.SetFlags(kDefaultLogFlags);
    log.LogMessage(LOG_IO_AHDLC, "hidden");
    log.LogMessage(LOG_ERR_AHDLC, "%s", std::string(2000, 'x').c_str());
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].iCategory, LOG_ERR_AHDLC);
    EXPECT_EQ(std::string(records[0].sText), "  " + std::string(997, 'x'));
}

TEST_F(TextLogTest, HexTextIsLimited) {
    const std::vector<unsigned char> packet(5000, 0xA5);
    std::vector<char> text(DataLogFileHandler::kHexTextSize, '?');
    DataLogFileHandler::FormatHexBytes(text.data(), packet.data(), 5000);
    EXPECT_EQ(std::string(text.data()).size(), 3967U * 3);
    DataLogFileHandler::FormatHexBytes(text.data(), packet.data(), 0);
    EXPECT_STREQ(text.data(), "");
    DataLogFileHandler log;
    std::vector<TextLogRecord> records;
    log.SetCallBack(&records, Collect);
    log.SetFlags(LOG_IO);
    log.LogHex(LOG_IO, packet.data(), 2, "SEND (%d bytes):", 2);
    log.LogHex(LOG_IO, packet.data(), 5000, "%s", std::string(11900, 'p').c_str()); // no room for the hex
    EXPECT_STREQ(records.at(0).sText, "SEND (2 bytes):A5 A5 ");
}

TEST_F(TextLogTest, MarkerFileStartsTheLogOfEveryConnection) {
    class Connection : public DiagConnection {
    public:
        Connection() : DiagConnection(99) { StartUp(); }
    };
    { Connection connection; }
    EXPECT_FALSE(std::filesystem::exists("QMSL_Log.txt"));
    std::ofstream("QMSL_auto_start_log.txt").close();
    {
        Connection connection;
        EXPECT_FALSE(connection.OpenPort());
        connection.AddUserMessageToTextLog(LOG_RET, "100 %s %n", false);
    }
    std::vector<std::string> texts;
    for (const std::string& sLine : FileLines("QMSL_Log.txt"))
        texts.push_back(sLine.substr(sLine.find(',') + 1));
    ASSERT_EQ(texts.size(), 2U + 7 + 3);
    EXPECT_EQ(texts[2], "LOG_FN,QLIB_ConfigureTimeOut( eTimeOutId = 0, iNewValue_ms = 4000)");
    EXPECT_EQ(texts[8], "LOG_FN,QLIB_ConfigureTimeOut( eTimeOutId = 6, iNewValue_ms = 10000)");
    EXPECT_EQ(texts[9], "LOG_FN,QLIB_OpenPort()");
    EXPECT_EQ(texts[10], "LOG_RET,100 %s %n");
    EXPECT_EQ(texts[11], "LOG_IO,Stop Log");
}

} // namespace
