// Execute verbs: following links, properties, typed commands; what reaches the phone and the host.
#include <gmock/gmock.h>

#include "host_fixture.h"
#include "plugin/properties.h"
#include "plugin/quote_command.h"

namespace {

using std::string_literals::operator""s;

const char kUnknown[] = "Uknown properties";

class FrontExecute : public HostTest {
protected:
    FrontExecute() {
        front.RequestProc = Request;
        s_pTest = this;
        Connect();
    }
    ~FrontExecute() override { front.RequestProc = nullptr; }

    std::string Properties(const std::string& sName) {
        m_sText = "(nothing shown)";
        EXPECT_EQ(Execute(sName, "properties").first, FS_EXEC_OK);
        return m_sText;
    }
    std::string m_sText;

private:
    static inline FrontExecute* s_pTest = nullptr;
    static BOOL HOST_CALL Request(int iNumber, int iType, char* sTitle, char* sText, char*, int) {
        EXPECT_EQ(iNumber, kPluginNumber);
        EXPECT_EQ(iType, RT_MsgOK);
        EXPECT_STREQ(sTitle, "Properties");
        s_pTest->m_sText = sText;
        Tick(40); // ticks continue while a message is open, like other calls of the host
        EXPECT_EQ(FsDisconnect(nullptr), 0);
        return -1;
    }
};

TEST_F(FrontExecute, OpenFollowsLinksToFolders) {
    m_phone.AddFile("dir/sub/f", {1});
    m_phone.AddFile("f", {1});
    const std::string s254 = "/dir/" + std::string(254, 'b'), s255 = "/dir/" + std::string(255, 'c');
    for (const std::string& sFolder : {"brew"s, s254, s255})
        m_phone.AddFolder(sFolder);
    // The link, its target, the result and the name afterwards.
    const std::tuple<std::string, std::string, int, std::string> cases[] = {
        {"/dir/odd", "/dir//sub/", FS_EXEC_SYMLINK, "/dir//sub/"},
        {"/dir/rel", "sub", FS_EXEC_SYMLINK, "/dir/sub"},
        {"/dir/up", "../brew/.", FS_EXEC_SYMLINK, "/brew"},
        {"/dir/root", "..", FS_EXEC_SYMLINK, "/"},
        {"/chain", "dir/rel", FS_EXEC_SYMLINK, "/dir/rel"},
        {"/file", "/f", FS_EXEC_YOURSELF, "/file"},
        {"/long1", s254, FS_EXEC_SYMLINK, s254},
        {"/long2", s255, FS_EXEC_ERROR, "/long2"},
    };
    for (const auto& [sLink, sTarget, iResult, sName] : cases) {
        m_phone.AddLink(sLink, sTarget);
        EXPECT_EQ(Execute(sLink, "open"), std::pair(iResult, sName)) << sLink;
    }
    EXPECT_EQ(Execute("\\dir\\rel", "open").second, "\\dir\\sub");
    for (const char* sPlain : {"\\dir", "\\missing", "/"})
        EXPECT_EQ(Execute(sPlain, "open").first, FS_EXEC_YOURSELF) << sPlain;
}

// A phone that stores absolute targets without the leading '/', and one whose response proves nothing.
TEST_F(FrontExecute, OpenFindsTargetsWithoutLeadingSlash) {
    m_phone.AddFolder("brew/mod");
    m_phone.AddLink("dir/l", "/brew/mod");
    m_phone.Answer(kReadLink, Packet(kReadLink, {0}, "brew/mod\0"s));
    EXPECT_EQ(Execute("/dir/l", "open").second, "/brew/mod");
    m_phone.Answer(kReadLink, Packet(kReadLink, {0}, std::string(900, 'x')));
    EXPECT_EQ(Execute("/dir/l", "open").second, "/dir/l");
}

TEST_F(FrontExecute, PropertiesText) {
    m_phone.AddFile("dir/f", {});
    m_phone.Answer(kStat, Packet(kStat, {0, 0x81A4, 1234567, 1, 1, 951782400, 1234567890}));
    m_phone.Answer(kStatFs,
                   Packet(kStatFs, {7, 0xFFFFFFFF, 0x11, 0, 512, 8388608, 2000, 1999, 0x7FFFFFFF, 3, 4}));
    const std::string sCommon =
        "Type:\t\t<FILE> [81A4]\nSize:\t\t1 234 567\nNo of links:\t1\n"
        "Access time:\tThu Jan 01 00:00:01 1970\n"
        "Modify time:\tTue Feb 29 00:00:00 2000\n"
        "Creation time:\tFri Feb 13 23:31:30 2009\n\n"
        "FS ID:\t\t-1\nFS Type:\t\t17\nBlock size:\t512\nMax file size:\t2147483647\n"
        "Capacity:\t\t0\nFree space:\t1 024 000";
    EXPECT_EQ(Properties("\\dir\\f"), "Name:\t\tdir/f\n" + sCommon);
    m_phone.Answer(kReadLink, Packet(kReadLink, {0}, "/%s%n" + std::string(1, '\0')));
    EXPECT_EQ(Properties("/%d"), "Name:\t\t%d\nLink to:\t\t/%s%n\n" + sCommon);
    const std::string sLong(1000, 'n');
    EXPECT_EQ(Properties("/" + sLong), ("Name:\t\t" + sLong + "\nLink to:\t\t/%s%n\n").substr(0, 1023));
    for (const auto& [iMode, sType] : {std::pair(0x41FFu, "<DIR> [41FF]"), {0x4000u, "[4000]"}}) {
        m_phone.Answer(kStat, Packet(kStat, {0, iMode, 999, 1, 0x80000000, 0, 0}));
        EXPECT_THAT(Properties("/x"),
                    testing::HasSubstr("\nType:\t\t"s + sType + "\nSize:\t\t999\nNo of links:\t1\n" +
                                       "Access time:\tThu Jan 01 00:00:00 1970\n"));
    }
}

TEST_F(FrontExecute, PropertiesThatCannotBeRead) {
    m_phone.AddFile("f", {1});
    EXPECT_EQ(Properties("\\"), "(nothing shown)"); // shows the banner and sends no request
    EXPECT_EQ(m_phone.CountOf(kStat), 0);
    EXPECT_EQ(Properties("/missing"), kUnknown);
    m_phone.Misbehave(Action::ProtocolError, kStatFs, 1, 0x13);
    EXPECT_EQ(Properties("/f"), kUnknown);
    FsDisconnect(nullptr);
    EXPECT_EQ(Properties("\\f"), kUnknown);
    front.RequestProc = nullptr; // as before FsInit
    EXPECT_EQ(Properties("/"), "(nothing shown)");
}

TEST_F(FrontExecute, TypedChangesOfTheFolder) {
    const std::string s254(254, 'x'), s255(255, 'y');
    for (const std::string& sName : {"My Dir"s, "a\"b"s, "sub"s, s254, s255})
        m_phone.AddFolder("dir/" + sName);
    m_phone.AddFile("dir/f", {1});
    const std::tuple<std::string, int, std::string> cases[] = {
        {"cd \"My Dir\"", FS_EXEC_SYMLINK, "/dir/My Dir"},
        {"cd a\"\"b", FS_EXEC_SYMLINK, "/dir/a\"b"},
        {"cd none", FS_EXEC_ERROR, "/dir/"},
        {"cd f", FS_EXEC_ERROR, "/dir/"},
        {"cd ./sub/../../dir//sub/", FS_EXEC_SYMLINK, "/dir/sub"},
        {"cd \"/dir/My Dir\"", FS_EXEC_SYMLINK, "/dir/My Dir"},
        {"cd \\dir", FS_EXEC_SYMLINK, "/dir"},
        {"cd ../..", FS_EXEC_SYMLINK, "/"},
        {"cd " + s254, FS_EXEC_SYMLINK, "/dir/" + s254},
        {"cd " + s255, FS_EXEC_ERROR, "/dir/"},
        {"cd " + std::string(507, 'z'), FS_EXEC_ERROR, "/dir/"},
        {"cd", FS_EXEC_OK, "/dir/"},
    };
    for (const auto& [sCommand, iResult, sName] : cases)
        EXPECT_EQ(Execute("/dir/", "quote " + sCommand), std::pair(iResult, sName)) << sCommand;
    EXPECT_EQ(Execute("/", "quote cd "), std::pair(FS_EXEC_SYMLINK, "/"s));
    m_phone.phone.ClearRequests();
    EXPECT_EQ(Execute("\\dir\\\\", "quote cd .\\sub"), std::pair(FS_EXEC_SYMLINK, "\\dir\\sub"s));
    EXPECT_EQ(m_phone.Requests(), (Lines{handset::ToHex(Packet(kStatFs, {}, "/dir/sub\0"s)),
                                         handset::ToHex(Packet(kStat, {}, "/dir/sub\0"s))}));
}

TEST_F(FrontExecute, TypedLinks) {
    m_phone.AddFile("dir/x y", {1});
    // What is typed, the result, and the two paths of the request ("": none).
    const std::tuple<std::string, int, std::string> cases[] = {
        {"ln \"x y\" \"e f\"", FS_EXEC_OK, "dir/e f.lnk\0/dir/x y\0"s},
        {"ln \"x y", FS_EXEC_OK, "dir/.lnk\0/dir/x y\0"s},
        {"ln a " + std::string(503, 'r'), FS_EXEC_ERROR, ""},
        {"ln", FS_EXEC_OK, ""},
    };
    for (const auto& [sCommand, iResult, sRequest] : cases) {
        m_phone.phone.ClearRequests();
        EXPECT_EQ(Execute("\\dir\\", "quote " + sCommand).first, iResult) << sCommand;
        const std::string sPrefix = handset::ToHex(Packet(kMakeLink, {}, sRequest));
        EXPECT_EQ(m_phone.CountOf(sPrefix), sRequest.empty() ? 0 : 1) << sCommand;
    }
}

TEST_F(FrontExecute, OtherVerbsAndUnusableArguments) {
    m_phone.AddFile("f", {1});
    m_phone.phone.ClearRequests();
    for (const char* sVerb : {"chmod 644", "", "OPEN", "openx", "quote"})
        EXPECT_EQ(Execute("/f", sVerb).first, FS_EXEC_OK) << sVerb;
    char sVerb[] = "open";
    std::string sLong(1024, 'a');
    EXPECT_EQ(FsExecuteFile(nullptr, nullptr, sVerb), FS_EXEC_ERROR);
    EXPECT_EQ(FsExecuteFile(nullptr, sLong.data(), sVerb), FS_EXEC_ERROR);
    EXPECT_TRUE(m_phone.Requests().empty());
}

TEST(FrontTexts, TwoArguments) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "|"},     {" a \v b c", "a|b"},     {"\"a b\"c d", "a bc|c"},   {"\"\" b", "|b"},
        {"\"a", "a|"}, {"a\"b c\"", "a\"b|c\""}, {"\" a \" \" b \"", "a|b"},
    };
    for (const auto& [sText, sArguments] : cases) {
        std::string sFirst = "#", sSecond = "#";
        ParseTwoArgs(sText, sFirst, sSecond);
        EXPECT_EQ(sFirst + "|" + sSecond, sArguments) << sText;
    }
}

} // namespace
