// Execute verbs: links that are followed, properties, typed commands; what reaches the phone and the host.
#include <cstring>

#include "host_fixture.h"
#include "plugin/properties.h"
#include "plugin/quote_command.h"

namespace {

using std::string_literals::operator""s;

const char kUnknown[] = "Uknown properties";

/// What FsExecuteFile returned, and the host's name buffer afterwards. Behind the host's 260 bytes nothing
/// may be written.
std::pair<int, std::string> Execute(const std::string& sName, std::string sVerb) {
    std::vector<char> buffer(2000, '#');
    std::memcpy(buffer.data(), sName.c_str(), sName.size() + 1);
    const size_t iRoom = std::max<size_t>(MAX_PATH, sName.size() + 1);
    const int iResult = FsExecuteFile(nullptr, buffer.data(), sVerb.data());
    EXPECT_EQ(std::count(buffer.begin() + static_cast<long>(iRoom), buffer.end(), '#'),
              static_cast<long>(buffer.size() - iRoom));
    return {iResult, buffer.data()};
}

std::string WithBackslashes(std::string sPath) {
    std::replace(sPath.begin(), sPath.end(), '/', '\\');
    return sPath;
}

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
    /// The requests with that beginning, as text behind it.
    Lines PathsOf(const std::string& sPrefix) {
        Lines paths;
        for (const Bytes& request : m_phone.phone.Requests())
            if (handset::BeginsWith(request, Hex(sPrefix))) {
                paths.emplace_back(request.begin() + 4, request.end() - 1);
                std::ranges::replace(paths.back(), '\0', '|');
            }
        m_phone.phone.ClearRequests();
        return paths;
    }

    std::string m_sText;
    std::function<void()> m_onMessage;

private:
    static inline FrontExecute* s_pTest = nullptr;
    static BOOL HOST_CALL Request(int iNumber, int iType, char* sTitle, char* sText, char* sAnswer,
                                  int iSize) {
        EXPECT_EQ(iNumber, kPluginNumber);
        EXPECT_EQ(iType, RT_MsgOK);
        EXPECT_STREQ(sTitle, "Properties");
        EXPECT_EQ(sAnswer, nullptr);
        EXPECT_EQ(iSize, 0);
        s_pTest->m_sText = sText;
        if (s_pTest->m_onMessage)
            s_pTest->m_onMessage();
        return -1;
    }
};

TEST_F(FrontExecute, OpenFollowsLinksToFolders) {
    m_phone.AddFile("dir/sub/f", {1});
    m_phone.AddFile("f", {1});
    const std::string s254 = "/dir/" + std::string(254, 'b'), s255 = "/dir/" + std::string(255, 'c');
    for (const std::string& sFolder : {"brew"s, "dir/brew2"s, s254, s255})
        m_phone.AddFolder(sFolder);
    // The link, its target, the result and the name afterwards.
    const std::tuple<std::string, std::string, int, std::string> cases[] = {
        {"/dir/abs", "/dir/sub", FS_EXEC_SYMLINK, "/dir/sub"},
        {"/dir/odd", "/dir//sub/", FS_EXEC_SYMLINK, "/dir//sub/"},
        {"/dir/rel", "sub", FS_EXEC_SYMLINK, "/dir/sub"},
        {"/dir/up", "../brew/.", FS_EXEC_SYMLINK, "/brew"},
        {"/dir/self", ".", FS_EXEC_SYMLINK, "/dir"},
        {"/dir/root", "..", FS_EXEC_SYMLINK, "/"},
        {"/top", "dir/sub", FS_EXEC_SYMLINK, "/dir/sub"},
        {"/chain", "dir/rel", FS_EXEC_SYMLINK, "/dir/rel"},
        {"/file", "/f", FS_EXEC_YOURSELF, "/file"},
        {"/long1", s254, FS_EXEC_SYMLINK, s254},
        {"/long2", s255, FS_EXEC_ERROR, "/long2"},
        {"/long3", "/" + std::string(600, '/') + "brew", FS_EXEC_ERROR, "/long3"},
    };
    for (const auto& [sLink, sTarget, iResult, sName] : cases) {
        m_phone.AddLink(sLink, sTarget);
        EXPECT_EQ(Execute(sLink, "open"), std::pair(iResult, sName)) << sLink;
        EXPECT_EQ(Execute(WithBackslashes(sLink), "open").second, WithBackslashes(sName));
    }
    for (const char* sPlain : {"\\f", "\\dir", "\\missing", "\\", "/"})
        EXPECT_EQ(Execute(sPlain, "open").first, FS_EXEC_YOURSELF) << sPlain;
}

// Phones that keep targets from the root without the leading '/'; and one whose answers prove nothing.
TEST_F(FrontExecute, OpenFindsTargetsWithoutLeadingSlash) {
    m_phone.AddFolder("brew/mod");
    m_phone.AddLink("dir/l", "/brew/mod");
    for (const auto& [sAnswer, sName] : {std::pair("brew/mod"s + '\0', "/brew/mod"s),
                                         {"else/where"s + '\0', "/dir/l"},
                                         {std::string(900, 'x'), "/dir/l"}}) {
        m_phone.Answer(kReadLink, Packet(kReadLink, {0}, sAnswer));
        EXPECT_EQ(Execute("/dir/l", "open").second, sName);
    }
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
    EXPECT_EQ(PathsOf(kStatFs), Lines{""});
    EXPECT_EQ(Properties("/"), "Name:\t\t\n" + sCommon);
    m_phone.Answer(kReadLink, Packet(kReadLink, {0}, "/%s%n" + std::string(1, '\0')));
    EXPECT_EQ(Properties("/%d"), "Name:\t\t%d\nLink to:\t\t/%s%n\n" + sCommon);
    const std::string sLong(1000, 'n');
    EXPECT_EQ(Properties("/" + sLong), ("Name:\t\t" + sLong + "\nLink to:\t\t/%s%n\n").substr(0, 1023));
}

TEST_F(FrontExecute, PropertiesOfManyModesAndTimes) {
    const std::string s1970 = "Thu Jan 01 00:00:00 1970";
    const std::tuple<uint32_t, uint32_t, uint32_t, std::string, std::string, std::string> cases[] = {
        {0x41FF, 0, 0, "<DIR> [41FF]", "0", s1970},
        {0x4000, 999, 0x7FFFFFFF, "[4000]", "999", "Tue Jan 19 03:14:07 2038"},
        {0xC100, 1000, 0x80000000, "<FILE> [C100]", "1 000", s1970},
        {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, "<FILE> [FFFFFFFF]", "4 294 967 295", s1970},
        {0x8080, 10203, 86399, "[8080]", "10 203", "Thu Jan 01 23:59:59 1970"},
    };
    for (const auto& [iMode, iSize, iTime, sType, sSize, sTime] : cases) {
        m_phone.Answer(kStat, Packet(kStat, {0, iMode, iSize, 0xFFFFFFFF, iTime, 5, iTime}));
        const std::string sText = Properties("/x");
        EXPECT_NE(
            sText.find("Type:\t\t" + sType + "\nSize:\t\t" + sSize + "\nNo of links:\t-1\nAccess time:\t" +
                       sTime + "\nModify time:\tThu Jan 01 00:00:05 1970\nCreation time:\t" + sTime + "\n\n"),
            std::string::npos)
            << sText;
    }
}

TEST_F(FrontExecute, PropertiesThatCannotBeRead) {
    m_phone.AddFile("f", {1});
    EXPECT_EQ(Properties("\\"), "(nothing shown)"); // the banner, and the phone is not asked
    EXPECT_EQ(m_phone.CountOf(kStat), 0);
    EXPECT_EQ(Properties("/missing"), kUnknown);
    m_phone.Misbehave(Action::ProtocolError, kStatFs, 1, 0x13);
    EXPECT_EQ(Properties("/f"), kUnknown);
    FsDisconnect(nullptr);
    m_phone.phone.ClearRequests();
    EXPECT_EQ(Properties("\\f"), kUnknown); // nothing is opened for it
    EXPECT_TRUE(m_phone.Requests().empty());
    front.RequestProc = nullptr; // as before FsInit
    EXPECT_EQ(Properties("/"), "(nothing shown)");
}

TEST_F(FrontExecute, CallsAndTicksWhileAMessageIsOpen) {
    m_phone.AddFile("f", {1, 2, 3});
    LocalFolder local;
    m_onMessage = [&] {
        Tick(40);
        EXPECT_EQ(FsDisconnect(nullptr), 0);
        std::thread([&] {
            EXPECT_EQ(NamesIn("/"), Lines{"f"});
            EXPECT_EQ(Get("/f", local.Path("f")), FS_FILE_OK);
        }).join();
        m_onMessage = nullptr;
        EXPECT_NE(Properties("/f"), kUnknown);
    };
    EXPECT_NE(Properties("/f"), kUnknown);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
    EXPECT_EQ(local.Read("f"), (Bytes{1, 2, 3}));
    EXPECT_NE(front.ContextHandle, nullptr);
}

TEST_F(FrontExecute, TypedChangesOfTheFolder) {
    const std::string s254 = std::string(254, 'x'), s255 = std::string(255, 'y'), s506(506, 'x');
    for (const std::string& sName : {"sub"s, "My Dir"s, "a\"b"s, s254, s255})
        m_phone.AddFolder("dir/" + sName);
    // What is typed, the result, the name afterwards, the path that the phone was asked about ("-": none).
    const std::tuple<std::string, int, std::string, std::string> cases[] = {
        {"cd sub", FS_EXEC_SYMLINK, "/dir/sub", "/dir/sub"},
        {"cd \"My Dir\"", FS_EXEC_SYMLINK, "/dir/My Dir", "/dir/My Dir"},
        {"cd a\"\"b", FS_EXEC_SYMLINK, "/dir/a\"b", "/dir/a\"b"},
        {"cd none", FS_EXEC_ERROR, "/dir/", "/dir/none"},
        {"cd    ", FS_EXEC_ERROR, "/dir/", "/dir/   "},
        {"cd %s%n", FS_EXEC_ERROR, "/dir/", "/dir/%s%n"},
        {"cd " + s254, FS_EXEC_SYMLINK, "/dir/" + s254, "/dir/" + s254},
        {"cd " + s255, FS_EXEC_ERROR, "/dir/", "/dir/" + s255},
        {"cd " + s506, FS_EXEC_ERROR, "/dir/", "/dir/" + s506},
        {"cd " + s506 + "x", FS_EXEC_ERROR, "/dir/", "-"},
        {"cd " + std::string(9000, '"'), FS_EXEC_ERROR, "/dir/", "-"},
        {"cd", FS_EXEC_OK, "/dir/", "-"},
        {"", FS_EXEC_OK, "/dir/", "-"},
    };
    for (const auto& [sCommand, iResult, sName, sAsked] : cases) {
        m_phone.phone.ClearRequests();
        EXPECT_EQ(Execute("/dir/", "quote " + sCommand), std::pair(iResult, sName)) << sCommand;
        EXPECT_EQ(PathsOf(kStatFs), sAsked == "-" ? Lines{} : Lines{sAsked}) << sCommand;
    }
    EXPECT_EQ(Execute("/", "quote cd "), std::pair(FS_EXEC_SYMLINK, "/"s));
    EXPECT_EQ(Execute("\\dir\\\\", "quote cd sub"), std::pair(FS_EXEC_SYMLINK, "\\dir\\sub"s));
    EXPECT_EQ(Execute("\\dir\\", "quote cd none"), std::pair(FS_EXEC_ERROR, "/dir/"s));
}

TEST_F(FrontExecute, TypedLinks) {
    m_phone.AddFile("dir/a", {7});
    m_phone.AddFile("dir/x y", {8});
    const std::tuple<std::string, int, std::string> cases[] = {
        // and the request: link|target
        {"ln a b", FS_EXEC_OK, "dir/b.lnk|/dir/a"},
        {"ln \"x y\" \"e f\"", FS_EXEC_OK, "dir/e f.lnk|/dir/x y"},
        {"ln \"x y", FS_EXEC_OK, "dir/.lnk|/dir/x y"},
        {"ln " + std::string(500, 'q') + " " + std::string(5000, 'r'), FS_EXEC_ERROR, ""},
        {"ln a " + std::string(503, 'r'), FS_EXEC_ERROR, ""},
        {"ln " + std::string(5000, '"'), FS_EXEC_ERROR, ""},
        {"ln", FS_EXEC_OK, ""},
    };
    for (const auto& [sCommand, iResult, sRequest] : cases) {
        EXPECT_EQ(Execute("\\dir\\", "quote " + sCommand).first, iResult) << sCommand;
        EXPECT_EQ(PathsOf(kMakeLink), sRequest.empty() ? Lines{} : Lines{sRequest}) << sCommand;
    }
    EXPECT_EQ(m_phone.Content("dir/b.lnk"), Bytes{7});
    EXPECT_EQ(m_phone.Content("dir/e f.lnk"), Bytes{8});
    FsDisconnect(nullptr);
    for (const char* sVerb : {"quote ln a b", "quote cd sub"})
        EXPECT_EQ(Execute("/dir/", sVerb).first, FS_EXEC_ERROR);
}

TEST_F(FrontExecute, OtherVerbsAndUnusableArguments) {
    m_phone.AddFile("f", {1});
    m_phone.phone.ClearRequests();
    for (const char* sVerb : {"chmod 644", "", "OPEN", "openx", "Properties", "quote"})
        EXPECT_EQ(Execute("/f", sVerb).first, FS_EXEC_OK) << sVerb;
    char sVerb[] = "open";
    std::string sName = "/f";
    std::string sLong(1024, 'a');
    EXPECT_EQ(FsExecuteFile(nullptr, nullptr, sVerb), FS_EXEC_ERROR);
    EXPECT_EQ(FsExecuteFile(nullptr, sName.data(), nullptr), FS_EXEC_ERROR);
    EXPECT_EQ(FsExecuteFile(nullptr, sLong.data(), sVerb), FS_EXEC_ERROR);
    EXPECT_TRUE(m_phone.Requests().empty());
}

TEST(FrontTexts, TwoArguments) {
    for (const char* sRow :
         {" > |", " \t  > |", "a > a|", " a \v b c > a|b", "\"a b\"c d > a bc|c", "\"\" b > |b", "\" > |",
          "\"a > a|", "a\"b c\" > a\"b|c\"", "\" a \" \" b \" > a|b"}) {
        const auto [sText, sArguments] = Sides(sRow);
        std::string sFirst = "#", sSecond = "#";
        ParseTwoArgs(sText.c_str(), sFirst, sSecond);
        EXPECT_EQ(sFirst + "|" + sSecond, sArguments) << sText;
    }
}

} // namespace
