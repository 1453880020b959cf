// Execute verbs: links that are followed, properties, typed commands; what reaches the phone and the host.
#include <cstring>

#include "host_fixture.h"
#include "plugin/properties.h"
#include "plugin/quote_command.h"

namespace {

const std::string kReadLink = "4B 13 07 00";
const std::string kMakeLink = "4B 13 06 00";
const char kUnknown[] = "Uknown properties";

/// What FsExecuteFile returned, and the host's name buffer afterwards. Behind the host's 260 bytes nothing
/// may be written.
struct Executed {
    int iResult;
    std::string sName;
};

Executed Execute(const std::string& sName, std::string sVerb) {
    std::vector<char> buffer(2000, '#');
    std::memcpy(buffer.data(), sName.c_str(), sName.size() + 1);
    const size_t iRoom = std::max<size_t>(MAX_PATH, sName.size() + 1);
    const int iResult = FsExecuteFile(nullptr, buffer.data(), sVerb.data());
    EXPECT_EQ(std::count(buffer.begin() + static_cast<long>(iRoom), buffer.end(), '#'),
              static_cast<long>(buffer.size() - iRoom));
    return {iResult, buffer.data()};
}

class FrontExecute : public HostTest {
protected:
    FrontExecute() {
        front.RequestProc = Request;
        Current() = this;
        Connect();
    }
    ~FrontExecute() override { front.RequestProc = nullptr; }

    void AddLink(const std::string& sPath, const std::string& sTarget) {
        m_phone.phone.WithFiles([&](handset::FileSystem& files) { files.AddLink(sPath, sTarget); });
    }
    std::string Properties(const std::string& sName) {
        m_sText = "(nothing shown)";
        EXPECT_EQ(Execute(sName, "properties").iResult, FS_EXEC_OK);
        return m_sText;
    }
    /// The requests with that beginning, as text behind it.
    Lines PathsOf(const std::string& sPrefix) {
        Lines paths;
        for (const Bytes& request : m_phone.phone.Requests())
            if (handset::BeginsWith(request, Hex(sPrefix))) {
                std::string sText(request.begin() + 4, request.end() - 1);
                std::replace(sText.begin(), sText.end(), '\0', '|');
                paths.push_back(sText);
            }
        m_phone.phone.ClearRequests();
        return paths;
    }

    std::string m_sText;
    std::function<void()> m_onMessage;

private:
    static FrontExecute*& Current() {
        static FrontExecute* pTest = nullptr;
        return pTest;
    }
    static BOOL HOST_CALL Request(int iNumber, int iType, char* sTitle, char* sText, char* sAnswer,
                                  int iSize) {
        EXPECT_EQ(iNumber, kPluginNumber);
        EXPECT_EQ(iType, RT_MsgOK);
        EXPECT_STREQ(sTitle, "Properties");
        EXPECT_EQ(sAnswer, nullptr);
        EXPECT_EQ(iSize, 0);
        Current()->m_sText = sText;
        if (Current()->m_onMessage)
            Current()->m_onMessage();
        return -1;
    }
};

TEST_F(FrontExecute, OpenFollowsLinksToFolders) {
    m_phone.AddFile("dir/sub/f", {1});
    m_phone.AddFile("f", {1});
    AddFolder("brew");
    AddFolder("dir/brew2");
    AddFolder("dir/" + std::string(250, 'a'));
    AddFolder("dir/" + std::string(254, 'b'));
    AddFolder("dir/" + std::string(255, 'c'));
    const struct {
        const char* sLink;
        std::string sTarget;
        int iResult;
        std::string sBackslash, sSlash; // the name afterwards
    } cases[] = {
        {"dir/abs", "/dir/sub", FS_EXEC_SYMLINK, "\\dir\\sub", "/dir/sub"},
        {"dir/odd", "/dir//sub/", FS_EXEC_SYMLINK, "\\dir\\\\sub\\", "/dir//sub/"},
        {"dir/rel", "sub", FS_EXEC_SYMLINK, "\\dir\\sub", "/dir/sub"},
        {"dir/up", "../brew/.", FS_EXEC_SYMLINK, "\\brew", "/brew"},
        {"dir/self", ".", FS_EXEC_SYMLINK, "\\dir", "/dir"},
        {"dir/root", "..", FS_EXEC_SYMLINK, "\\", "/"},
        {"top", "dir/sub", FS_EXEC_SYMLINK, "\\dir\\sub", "/dir/sub"},
        {"chain", "dir/rel", FS_EXEC_SYMLINK, "\\dir\\rel", "/dir/rel"},
        {"file", "/f", FS_EXEC_YOURSELF, "\\file", "/file"},
        {"gone", "/nowhere", FS_EXEC_YOURSELF, "\\gone", "/gone"},
        {"long1", "/dir/" + std::string(250, 'a'), FS_EXEC_SYMLINK, "\\dir\\" + std::string(250, 'a'),
         "/dir/" + std::string(250, 'a')},
        {"long2", "/dir/" + std::string(254, 'b'), FS_EXEC_SYMLINK, "\\dir\\" + std::string(254, 'b'),
         "/dir/" + std::string(254, 'b')},
        {"long3", "/dir/" + std::string(255, 'c'), FS_EXEC_ERROR, "\\long3", "/long3"},
        {"long4", "/" + std::string(600, '/') + "brew", FS_EXEC_ERROR, "\\long4", "/long4"},
    };
    for (const auto& c : cases) {
        AddLink(c.sLink, c.sTarget);
        const std::string sLink = c.sLink;
        const Executed slash = Execute("/" + sLink, "open");
        EXPECT_EQ(slash.iResult, c.iResult) << c.sLink;
        EXPECT_EQ(slash.sName, c.sSlash);
        std::string sName = "\\" + sLink;
        std::replace(sName.begin(), sName.end(), '/', '\\');
        EXPECT_EQ(Execute(sName, "open").sName, c.sBackslash);
    }
    for (const char* sPlain : {"\\f", "\\dir", "\\missing", "\\", "/"})
        EXPECT_EQ(Execute(sPlain, "open").iResult, FS_EXEC_YOURSELF) << sPlain;
}

// Phones that keep targets from the root without the leading '/'; and one whose answers prove nothing.
TEST_F(FrontExecute, OpenFindsTargetsWithoutLeadingSlash) {
    AddFolder("brew/mod");
    AddFolder("dir");
    AddLink("dir/l", "/brew/mod");
    const Bytes target = Packet(kReadLink, {0}, "brew/mod" + std::string(1, '\0'));
    m_phone.Answer(kReadLink, target);
    EXPECT_EQ(Execute("/dir/l", "open").sName, "/brew/mod");
    m_phone.Answer(kReadLink, Packet(kReadLink, {0}, "else/where" + std::string(1, '\0')));
    EXPECT_EQ(Execute("\\dir\\l", "open").sName, "\\dir\\l");
    m_phone.Answer(kReadLink, Packet(kReadLink, {0}, std::string(900, 'x'))); // no end
    EXPECT_EQ(Execute("/dir/l", "open").sName, "/dir/l");
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
    const struct {
        uint32_t iMode, iTime;
        const char* sType;
        const char* sTime;
    } cases[] = {
        {0x41FF, 0, "<DIR> [41FF]", "Thu Jan 01 00:00:00 1970"},
        {0x4000, 0x7FFFFFFF, "[4000]", "Tue Jan 19 03:14:07 2038"},
        {0xC100, 0x80000000, "<FILE> [C100]", "Thu Jan 01 00:00:00 1970"},
        {0xFFFFFFFF, 0xFFFFFFFF, "<FILE> [FFFFFFFF]", "Thu Jan 01 00:00:00 1970"},
        {0x8080, 86399, "[8080]", "Thu Jan 01 23:59:59 1970"},
    };
    for (const auto& c : cases) {
        m_phone.Answer(kStat, Packet(kStat, {0, c.iMode, 0, 0xFFFFFFFF, c.iTime, 5, c.iTime}));
        const std::string sText = Properties("/x");
        EXPECT_NE(sText.find(std::string("Type:\t\t") + c.sType + "\nSize:\t\t0\nNo of links:\t-1\n"),
                  std::string::npos)
            << sText;
        EXPECT_NE(
            sText.find(std::string("Access time:\t") + c.sTime +
                       "\nModify time:\tThu Jan 01 00:00:05 1970\n" + "Creation time:\t" + c.sTime + "\n\n"),
            std::string::npos)
            << sText;
    }
}

TEST_F(FrontExecute, PropertiesThatCannotBeRead) {
    m_phone.AddFile("f", {1});
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

// The banner; the phone is not asked, and no message is shown.
TEST_F(FrontExecute, PropertiesOfThePluginItself) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Properties("\\"), "(nothing shown)");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    EXPECT_TRUE(m_phone.Requests().empty() || m_phone.CountOf(kStat) == 0);
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
    AddFolder("dir/sub");
    AddFolder("dir/My Dir");
    AddFolder("dir/a\"b");
    const std::string s250(250, 'x');
    AddFolder("dir/" + s250 + "abcd");
    AddFolder("dir/" + s250 + "abcde");
    const struct {
        std::string sDirectory, sCommand;
        int iResult;
        std::string sName;
        std::string sAsked; // the path that the phone was asked about; "-": none
    } cases[] = {
        {"\\dir\\", "cd sub", FS_EXEC_SYMLINK, "\\dir\\sub", "/dir/sub"},
        {"/dir/", "cd sub", FS_EXEC_SYMLINK, "/dir/sub", "/dir/sub"},
        {"\\dir\\\\", "cd \"My Dir\"", FS_EXEC_SYMLINK, "\\dir\\My Dir", "/dir/My Dir"},
        {"/dir/", "cd a\"\"b", FS_EXEC_SYMLINK, "/dir/a\"b", "/dir/a\"b"},
        {"/dir/", "cd \"sub", FS_EXEC_SYMLINK, "/dir/sub", "/dir/sub"},
        {"/", "cd ", FS_EXEC_SYMLINK, "/", "/"},
        {"/dir/", "cd none", FS_EXEC_ERROR, "/dir/", "/dir/none"},
        {"\\dir\\", "cd none", FS_EXEC_ERROR, "/dir/", "/dir/none"},
        {"/dir/", "cd    ", FS_EXEC_ERROR, "/dir/", "/dir/   "},
        {"/dir/", "cd %s%n", FS_EXEC_ERROR, "/dir/", "/dir/%s%n"},
        {"/dir/", "cd " + s250 + "abcd", FS_EXEC_SYMLINK, "/dir/" + s250 + "abcd", "/dir/" + s250 + "abcd"},
        {"/dir/", "cd " + s250 + "abcde", FS_EXEC_ERROR, "/dir/", "/dir/" + s250 + "abcde"},
        {"/dir/", "cd " + std::string(506, 'x'), FS_EXEC_ERROR, "/dir/", "/dir/" + std::string(506, 'x')},
        {"/dir/", "cd " + std::string(507, 'x'), FS_EXEC_ERROR, "/dir/", "-"},
        {"/dir/", "cd " + std::string(9000, '"'), FS_EXEC_ERROR, "/dir/", "-"},
        {"/dir/", "cd", FS_EXEC_OK, "/dir/", "-"},
        {"/dir/", "dir", FS_EXEC_OK, "/dir/", "-"},
        {"/dir/", "", FS_EXEC_OK, "/dir/", "-"},
    };
    for (const auto& c : cases) {
        m_phone.phone.ClearRequests();
        const Executed executed = Execute(c.sDirectory, "quote " + c.sCommand);
        EXPECT_EQ(executed.iResult, c.iResult) << c.sCommand;
        EXPECT_EQ(executed.sName, c.sName) << c.sCommand;
        EXPECT_EQ(PathsOf(kStatFs), c.sAsked == "-" ? Lines{} : Lines{c.sAsked}) << c.sCommand;
    }
}

TEST_F(FrontExecute, TypedLinks) {
    m_phone.AddFile("dir/a", {7});
    m_phone.AddFile("dir/x y", {8});
    const struct {
        std::string sCommand;
        int iResult;
        std::string sRequest; // link|target
    } cases[] = {
        {"ln a b", FS_EXEC_OK, "dir/b.lnk|/dir/a"},
        {"ln   a\t  c  ", FS_EXEC_OK, "dir/c.lnk|/dir/a"},
        {"ln \"x y\" d", FS_EXEC_OK, "dir/d.lnk|/dir/x y"},
        {"ln \"x y\" \"e f\"", FS_EXEC_OK, "dir/e f.lnk|/dir/x y"},
        {"ln \"x y", FS_EXEC_OK, "dir/.lnk|/dir/x y"},
        {"ln none b", FS_EXEC_ERROR, ""},
        {"ln " + std::string(500, 'q') + " " + std::string(5000, 'r'), FS_EXEC_ERROR, ""},
        {"ln a " + std::string(503, 'r'), FS_EXEC_ERROR, ""},
        {"ln " + std::string(5000, '"'), FS_EXEC_ERROR, ""},
        {"ln", FS_EXEC_OK, ""},
    };
    for (const auto& c : cases) {
        m_phone.phone.ClearRequests();
        EXPECT_EQ(Execute("\\dir\\", "quote " + c.sCommand).iResult, c.iResult) << c.sCommand;
        EXPECT_EQ(PathsOf(kMakeLink), c.sRequest.empty() ? Lines{} : Lines{c.sRequest}) << c.sCommand;
    }
    EXPECT_EQ(m_phone.Content("dir/b.lnk"), Bytes{7});
    EXPECT_EQ(m_phone.Content("dir/e f.lnk"), Bytes{8});
    FsDisconnect(nullptr);
    EXPECT_EQ(Execute("/dir/", "quote ln a b").iResult, FS_EXEC_ERROR);
    EXPECT_EQ(Execute("/dir/", "quote cd sub").iResult, FS_EXEC_ERROR);
}

TEST_F(FrontExecute, OtherVerbsAndUnusableArguments) {
    m_phone.AddFile("f", {1});
    m_phone.phone.ClearRequests();
    for (const char* sVerb : {"chmod 644", "", "OPEN", "openx", "Properties", "quote"})
        EXPECT_EQ(Execute("/f", sVerb).iResult, FS_EXEC_OK) << sVerb;
    char sVerb[] = "open";
    std::string sName = "/f";
    std::string sLong(1024, 'a');
    EXPECT_EQ(FsExecuteFile(nullptr, nullptr, sVerb), FS_EXEC_ERROR);
    EXPECT_EQ(FsExecuteFile(nullptr, sName.data(), nullptr), FS_EXEC_ERROR);
    EXPECT_EQ(FsExecuteFile(nullptr, sLong.data(), sVerb), FS_EXEC_ERROR);
    EXPECT_TRUE(m_phone.Requests().empty());
}

TEST(FrontTexts, Thousands) {
    const struct {
        DWORD iValue;
        const char* sText;
    } cases[] = {{0, "0"},          {999, "999"},           {1000, "1 000"},
                 {10203, "10 203"}, {1000000, "1 000 000"}, {4294967295, "4 294 967 295"}};
    for (const auto& c : cases)
        EXPECT_EQ(FormatThousands(c.iValue), c.sText);
}

TEST(FrontTexts, TwoArguments) {
    const struct {
        const char* sText;
        const char* sFirst;
        const char* sSecond;
    } cases[] = {
        {"", "", ""},
        {" \t ", "", ""},
        {"a", "a", ""},
        {" a \v b c", "a", "b"},
        {"\"a b\"c d", "a bc", "c"},
        {"\"\" b", "", "b"},
        {"\"", "", ""},
        {"\"a", "a", ""},
        {"a\"b c\"", "a\"b", "c\""},
        {"\" a \" \" b \"", "a", "b"},
    };
    for (const auto& c : cases) {
        std::string sFirst = "#";
        std::string sSecond = "#";
        ParseTwoArgs(c.sText, sFirst, sSecond);
        EXPECT_EQ(sFirst, c.sFirst) << c.sText;
        EXPECT_EQ(sSecond, c.sSecond) << c.sText;
    }
}

} // namespace
