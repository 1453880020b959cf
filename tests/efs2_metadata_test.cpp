// The operations on names: requests, answers and log lines byte for byte, and what bad answers do.
#include <functional>
#include <sstream>

#include "phone_fixture.h"

namespace {

/// The result of a call and its out-values, as one text.
template <class... Values>
std::string Shown(bool bResult, const Values&... values) {
    std::ostringstream text;
    text << (bResult ? "true" : "false") << std::hex;
    ((text << ' ' << values), ...);
    return text.str();
}

using Call = std::function<std::string(Diag_FTM&)>;

std::string Mkdir(Diag_FTM& diag) {
    return Shown(diag.EFS2_DIAG_MKDIR("/a"));
}
std::string Rmdir(Diag_FTM& diag) {
    return Shown(diag.EFS2_DIAG_RMDIR("d"));
}
std::string Unlink(Diag_FTM& diag) {
    return Shown(diag.EFS2_DIAG_UNLINK("f %s"));
}
std::string Rename(Diag_FTM& diag) {
    DWORD iErrorNo = 7;
    const bool bResult = diag.EFS2_DIAG_RENAME("o", "n", iErrorNo);
    return Shown(bResult, iErrorNo);
}
std::string Chmod(Diag_FTM& diag) {
    DWORD iErrorNo = 7;
    const bool bResult = diag.EFS2_DIAG_CHMOD(0x1A4, "f", iErrorNo);
    return Shown(bResult, iErrorNo);
}
std::string Access(Diag_FTM& diag) {
    DWORD iErrorNo = 7;
    const bool bResult = diag.EFS2_DIAG_ACCESS(6, "f", iErrorNo);
    return Shown(bResult, iErrorNo);
}
std::string Stat(Diag_FTM& diag) {
    DWORD v[7] = {0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7};
    const bool bResult = diag.EFS2_DIAG_STAT("f", v[0], v[1], v[2], v[3], v[4], v[5], v[6]);
    return Shown(bResult, v[0], v[1], v[2], v[3], v[4], v[5], v[6]);
}
std::string Statfs(Diag_FTM& diag) {
    DWORD v[10] = {0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xF9};
    const bool bResult =
        diag.EFS2_DIAG_STATFS("/", v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9]);
    return Shown(bResult, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9]);
}
std::string DevInfo(Diag_FTM& diag) {
    DWORD v[7] = {0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7};
    unsigned char iType = 0xF8;
    char sName[Diag_FTM::kEfs2TextSize] = "untouched";
    const bool bResult = diag.EFS2_DIAG_DEV_INFO(v[0], v[1], v[2], v[3], v[4], v[5], v[6], iType, sName);
    return Shown(bResult, v[0], v[1], v[2], v[3], v[4], v[5], v[6], +iType, std::string(sName));
}
std::string ReadLink(Diag_FTM& diag) {
    char sTarget[Diag_FTM::kEfs2TextSize] = "before";
    const bool bResult = diag.EFS2_DIAG_READ_LINK("l", sTarget);
    return Shown(bResult, std::string(sTarget));
}
std::string CreateLink(Diag_FTM& diag) {
    return Shown(diag.EFS2_DIAG_CREATE_LINK("l", "t/u"));
}
std::string ExtendedInfo(Diag_FTM& diag) {
    EFS2_EXT_Kind_Enum eKind{9};
    DWORD iInt = 0xF1;
    char sText[Diag_FTM::kEfs2TextSize] = "before";
    const bool bResult = diag.EFS2_DIAG_EXTENDED_INFO(EFS2_EXT_QueryType_Enum{3}, eKind, iInt, sText);
    return Shown(bResult, static_cast<int>(eKind), iInt, std::string(sText));
}
std::string GetAttributes(Diag_FTM& diag) {
    DWORD v[3] = {0xF1, 0xF2, 0xF3};
    const bool bResult = diag.DIAG_GET_FILE_ATTRIBUTES("/x", &v[0], &v[1], &v[2]);
    return Shown(bResult, v[0], v[1], v[2]);
}
std::string SetAttributes(Diag_FTM& diag) {
    return Shown(diag.DIAG_SET_FILE_ATTRIBUTES("/x", 0x11, 0x22));
}

const Bytes kStatAnswer = Packet("4B 13 0F 00", {0, 0x81A4, 0x300, 1, 0x51, 0x52, 0x53});

struct Exchange {
    Call call;
    std::string sRequest;
    Bytes answer;
    std::string sOutcome;
    std::vector<std::string> log;
};

const Exchange kExchanges[] = {
    {Mkdir,
     "4B 13 09 00 FF 01 2F 61 00",
     Packet("4B 13 09 00", {0}),
     "true",
     {"0x0002 QLIB_EFS2_DIAG_MKDIR( strDir = /a )",
      "0x0004 QLIB_EFS2_DIAG_MKDIR() - Results mkdir_rsp.errnum = 0"}},
    {Rmdir,
     "4B 13 0A 00 64 00",
     Packet("4B 13 0A 00", {39}),
     "true",
     {"0x0002 QLIB_EFS2_DIAG_RMDIR( sFolderPath = d)"}},
    {Unlink,
     "4B 13 08 00 66 20 25 73 00",
     Packet("4B 13 08 00", {2}),
     "true",
     {"0x0002 QLIB_EFS2_DIAG_UNLINK( sFilePath = f %s )"}},
    {Rename,
     "4B 13 0E 00 6F 00 6E 00",
     Packet("4B 13 0E 00", {2}),
     "true 2",
     {"0x0002 QLIB_EFS2_DIAG_RENAME( sOldFilePath = o, sNewFilePath = n, iErrorNo = 7)"}},
    {Chmod,
     "4B 13 12 00 A4 01 00 00 66 00",
     Packet("4B 13 12 00", {0}),
     "true 0",
     {"0x0002 QLIB_EFS2_DIAG_CHMOD( iMode = 420, sFilePath = f )"}},
    {Access,
     "4B 13 14 00 66 00",
     Packet("4B 13 14 00", {13}),
     "true d",
     {"0x0002 QLIB_EFS2_DIAG_ACCESS( iPermissionBits = 0x6, sFilePath = f, iErrorNo = 7)"}},
    {Stat,
     "4B 13 0F 00 66 00",
     kStatAnswer,
     "true 0 81a4 300 1 51 52 53",
     {"0x0002 QLIB_EFS2_DIAG_STAT( sFilePath = f",
      "0x0004 QLIB_EFS2_DIAG_STAT( \t\t\tsFilePath = f, iErrorNo = 0x0, iMode = 0x81A4, iSize = 0x300, "
      "\t\t\tiNlink = 0x1, iAtime = 0x51, iMtime = 0x52, iCtime  = 0x53)"}},
    {Statfs,
     "4B 13 13 00 2F 00",
     Packet("4B 13 13 00", {0, 1, 2, 0xEEEE, 3, 4, 5, 6, 7, 8, 9}),
     "true 0 1 2 3 4 5 6 7 8 9",
     {"0x0002 QLIB_EFS2_DIAG_STATFS( sFilePath = /)",
      "0x0004 QLIB_EFS2_DIAG_STATFS( \t\t\tsFilePath = /, iErrorNo  = 0, iFS_ID  = 1, iFS_Type  = 2, "
      "iBlockSize  = 3, \t\t\tiTotalBlocks  = 4, iAvailBlocks  = 5, iFreeBlocks  = 6, iMaxFileSize  = "
      "7,\t\t\tiNfiles  = 8, iMaxNfiles  = 9)"}},
    {DevInfo,
     "4B 13 15 00",
     Packet("4B 13 15 00", {0, 1, 2, 3, 4, 5, 6}, std::string("\x07Nor\0rest", 9)),
     "true 0 1 2 3 4 5 6 7 Nor",
     {"0x0002 QLIB_EFS2_DIAG_DEV_INFO()",
      "0x0004 QLIB_EFS2_DIAG_DEV_INFO( \t\t\tiErrorNo = 0x0, iTotalNumOfBlocks = 0x1, iNumPagesPerBlock = "
      "0x2, "
      "\t\t\tiPageSize = 0x3, iTotalPageSize = 0x4, iMakerId = 0x5, iDeviceId = 0x6, \t\t\tiDeviceType = "
      "0x7, "
      "psDeviceName  = Nor)"}},
    {ReadLink,
     "4B 13 07 00 6C 00",
     Packet("4B 13 07 00", {0}, std::string("to/it\0", 6)),
     "true to/it",
     {"0x0002 QLIB_EFS2_DIAG_READ_LINK( sFilePath = l, sPointedFilePath = before)"}},
    {CreateLink,
     "4B 13 06 00 6C 00 74 2F 75 00",
     Packet("4B 13 06 00", {17}),
     "true",
     {"0x0002 QLIB_EFS2_DIAG_CREATE_LINK( sFilePath = l, sPointedFilePath = t/u )"}},
    {ExtendedInfo,
     "4B 13 1D 00 03 00 00 00 00 00 00 00 00",
     Packet("4B 13 1D 00", {0, 0x2A}),
     "true 0 2a before",
     {"0x0002 QLIB_EFS2_DIAG_EXTENDED_INFO( iQueryType = 3 )",
      "0x0004 QLIB_EFS2_DIAG_EXTENDED_INFO( iReturnInt = 42 )"}},
    {ExtendedInfo,
     "4B 13 1D 00 03 00 00 00 00 00 00 00 00",
     Packet("4B 13 1D 00", {1, 0}, std::string("yes\0", 4)),
     "true 1 f1 yes",
     {"0x0002 QLIB_EFS2_DIAG_EXTENDED_INFO( iQueryType = 3 )",
      "0x0004 QLIB_EFS2_DIAG_EXTENDED_INFO( sReturnString = yes )"}},
    {ExtendedInfo,
     "4B 13 1D 00 03 00 00 00 00 00 00 00 00",
     Packet("4B 13 1D 00", {2, 1}, "no"),
     "false 9 f1 before",
     {"0x0002 QLIB_EFS2_DIAG_EXTENDED_INFO( iQueryType = 3 )",
      "0x0004 QLIB_EFS2_DIAG_EXTENDED_INFO( ) -- Error: invalid data return type"}},
    {GetAttributes, "59 07 03 2F 78 00", Packet("59 07 00", {1, 2, 3}), "true 1 2 3", {}},
    {SetAttributes, "59 08 03 2F 78 00 11 00 00 00 22 00 00 00", Packet("59 08"), "true", {}},
};

class MetadataTest : public PhoneTest {
protected:
    MetadataTest() {
        m_diag.OpenPort();
        m_log.Clear();
    }
    /// The answer to every request is `packet`; what the call makes of it.
    std::string Answered(const Call& call, const Bytes& packet) {
        m_phone.Answer("", packet);
        return call(m_diag);
    }
};

TEST_F(MetadataTest, RequestsAnswersAndLog) {
    for (const Exchange& exchange : kExchanges) {
        m_log.Clear();
        m_phone.phone.ClearRequests();
        EXPECT_EQ(Answered(exchange.call, exchange.answer), exchange.sOutcome) << exchange.sRequest;
        EXPECT_EQ(m_phone.Requests(), std::vector<std::string>{exchange.sRequest});
        EXPECT_EQ(m_log.Lines(), exchange.log);
    }
}

TEST_F(MetadataTest, AnswersOfUnexpectedLength) {
    const std::string sLong(4000, 'n');
    const struct {
        Call call;
        Bytes answer;
        std::string sOutcome;
    } cases[] = {
        {Mkdir, Packet("4B 13 09 00", {17}), "false"},
        {Mkdir, Packet("4B 13 09 00"), "false"},
        // The last fields stay where they are, seen from the end.
        {Stat, Packet(handset::ToHex(kStatAnswer), {0x54}), "true 81a4 300 1 51 52 53 54"},
        {Rename, Packet("4B"), "true 7"},
        {Rename, Packet("4B 13 0E 00", {1, 2}), "true 2"},
        // A status with a type of 4 bytes, one that goes on, one that ends early, one that says nothing.
        {Statfs, Packet("4B 13 13 00", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}), "true 0 1 2 3 4 5 6 7 8 9"},
        {Statfs, Packet("4B 13 13 00", {0, 1, 2, 0, 3, 4, 5, 6, 7, 8, 9, 10}), "true 0 1 2 3 4 5 6 7 8 9"},
        {Statfs, Packet("4B 13 13 00", {2, 1}), "true 2 1 f2 f3 f4 f5 f6 f7 f8 f9"},
        {Statfs, Packet("4B 13 13 00 02"), "false f0 f1 f2 f3 f4 f5 f6 f7 f8 f9"},
        // Texts: cut to what the caller has room for, never beyond the answer, empty when missing.
        {ReadLink, Packet("4B 13 07 00", {2}), "true "},
        {ReadLink, Packet("4B 13 07 00", {0}, "open"), "true open"},
        {ReadLink, Packet("4B 13 07 00", {0}, sLong), "true " + sLong.substr(0, 511)},
        {DevInfo, Packet("4B 13 15 00", {5}), "true 5 f2 f3 f4 f5 f6 f7 f8 "},
        {DevInfo, Packet("4B 13 15 00", {0, 1, 2, 3, 4, 5, 6}, "\x07" + sLong),
         "true 0 1 2 3 4 5 6 7 " + sLong.substr(0, 511)},
        {ExtendedInfo, Packet("4B 13 1D 00", {1}), "true 1 f1 "},
        {ExtendedInfo, Packet("4B 13 1D 00", {0}), "false 9 f1 before"},
        {ExtendedInfo, Packet("4B 13 1D 00"), "false 9 f1 before"},
        {GetAttributes, Packet("59 07", {1, 2}), "true f1 f2 f3"},
    };
    for (const auto& test : cases)
        EXPECT_EQ(Answered(test.call, test.answer), test.sOutcome)
            << handset::ToHex(test.answer).substr(0, 60);
}

TEST_F(MetadataTest, NoAnswerAndProtocolErrorsChangeNothing) {
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 30);
    const struct {
        Call call;
        std::string sOutcome;
    } cases[] = {
        {Rmdir, "false"},
        {Unlink, "false"},
        {CreateLink, "false"},
        {Rename, "false 7"},
        {Chmod, "false 7"},
        {Access, "false 7"},
        {SetAttributes, "false"},
        {ReadLink, "false before"},
        {GetAttributes, "false f1 f2 f3"},
        {Stat, "false f1 f2 f3 f4 f5 f6 f7"},
        {Statfs, "false f0 f1 f2 f3 f4 f5 f6 f7 f8 f9"},
        {DevInfo, "false f1 f2 f3 f4 f5 f6 f7 f8 untouched"},
        {ExtendedInfo, "false 9 f1 before"},
    };
    for (const Action eAction : {Action::Ignore, Action::ProtocolError}) {
        m_phone.phone.Behave();
        m_phone.Misbehave(eAction, "", -1, 0x13);
        for (const auto& test : cases)
            EXPECT_EQ(test.call(m_diag), test.sOutcome);
    }
    m_phone.phone.Unplug();
    EXPECT_EQ(Mkdir(m_diag), "false");
    EXPECT_EQ(Chmod(m_diag), "false 7");
    EXPECT_TRUE(m_log.Of(LOG_RET).empty());
}

TEST_F(MetadataTest, PathsThatDoNotFitAreNotSent) {
    const auto path = [](size_t iLength) { return std::string(iLength, 'p'); };
    DWORD v[3] = {};
    const std::function<bool(const std::string&)> mkdir = [&](const std::string& s) {
        return m_diag.EFS2_DIAG_MKDIR(s.c_str());
    };
    const std::function<bool(const std::string&)> rename = [&](const std::string& s) {
        return m_diag.EFS2_DIAG_RENAME("o", s.c_str(), v[0]);
    };
    const std::function<bool(const std::string&)> get = [&](const std::string& s) {
        return m_diag.DIAG_GET_FILE_ATTRIBUTES(s.c_str(), &v[0], &v[1], &v[2]);
    };
    const std::function<bool(const std::string&)> set = [&](const std::string& s) {
        return m_diag.DIAG_SET_FILE_ATTRIBUTES(s.c_str(), 1, 2);
    };
    m_phone.Answer("4B", Packet("4B 13 00 00", {0}));
    m_phone.Answer("59", Packet("59 07"));
    const struct {
        std::function<bool(const std::string&)> call;
        size_t iLongest;
    } cases[] = {{mkdir, 249}, {rename, 4086}, {get, 254}, {set, 254}};
    for (const auto& test : cases) {
        m_phone.phone.ClearRequests();
        EXPECT_TRUE(test.call(path(test.iLongest))) << test.iLongest;
        EXPECT_EQ(m_phone.Requests().size(), 1u);
        EXPECT_FALSE(test.call(path(test.iLongest + 1))) << test.iLongest;
        EXPECT_EQ(m_phone.Requests().size(), 1u);
    }
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_EFS2_DIAG_MKDIR( strDir = " + path(250) + " )"));
}

TEST_F(MetadataTest, AgainstThePhonesFileSystem) {
    DWORD iErrorNo = 9;
    DWORD iMode = 0, iSize = 0, iNlink = 0, iAtime = 0, iMtime = 0, iCtime = 0;
    char sTarget[Diag_FTM::kEfs2TextSize] = "";
    m_phone.AddFile("data/x", Pattern(1000));
    EXPECT_TRUE(m_diag.EFS2_DIAG_MKDIR("made"));
    EXPECT_FALSE(m_diag.EFS2_DIAG_MKDIR("made"));
    EXPECT_TRUE(m_diag.EFS2_DIAG_RENAME("data/x", "made/y", iErrorNo));
    EXPECT_EQ(iErrorNo, 0u);
    EXPECT_TRUE(m_diag.EFS2_DIAG_CREATE_LINK("link", "made/y"));
    EXPECT_TRUE(m_diag.EFS2_DIAG_READ_LINK("link", sTarget));
    EXPECT_STREQ(sTarget, "made/y");
    EXPECT_TRUE(m_diag.EFS2_DIAG_CHMOD(0600, "made/y", iErrorNo));
    EXPECT_TRUE(m_diag.EFS2_DIAG_STAT("link", iErrorNo, iMode, iSize, iNlink, iAtime, iMtime, iCtime));
    EXPECT_EQ(Shown(true, iErrorNo, iMode, iSize, iNlink), "true 0 8180 3e8 1");
    EXPECT_TRUE(m_diag.EFS2_DIAG_ACCESS(4, "data/x", iErrorNo));
    EXPECT_EQ(iErrorNo, 2u);
    EXPECT_TRUE(m_diag.EFS2_DIAG_RMDIR("made"));
    EXPECT_TRUE(m_phone.Exists("made"));
    EXPECT_TRUE(m_diag.EFS2_DIAG_UNLINK("made/y"));
    EXPECT_TRUE(m_diag.EFS2_DIAG_RMDIR("made"));
    EXPECT_FALSE(m_phone.Exists("made"));
}

struct PathRules : Efs2Metadata {
    using Efs2Metadata::EfsFnSplit;
    using Efs2Metadata::EfsIsLegalName;
};

TEST(PathRulesTest, SplitAndLegalNames) {
    const struct {
        const char *sPath, *sDir, *sName;
    } splits[] = {{"/brew/mod/a.txt", "/brew/mod/", "a.txt"},
                  {"a.txt", "", "a.txt"},
                  {"/", "/", ""},
                  {"abc/", "abc/", ""},
                  {"", "", ""}};
    for (const auto& split : splits) {
        char sDir[32];
        char sName[32];
        PathRules::EfsFnSplit(split.sPath, sDir, sName);
        EXPECT_STREQ(sDir, split.sDir);
        EXPECT_STREQ(sName, split.sName);
    }
    const auto path = [](size_t iDir, size_t iName) {
        return std::string(iDir, 'd') + "/" + std::string(iName, 'n');
    };
    EXPECT_TRUE(PathRules::EfsIsLegalName(path(47, 80)));
    EXPECT_FALSE(PathRules::EfsIsLegalName(path(48, 80)));
    EXPECT_FALSE(PathRules::EfsIsLegalName(path(10, 81)));
    EXPECT_FALSE(PathRules::EfsIsLegalName(std::string(81, 'n')));
    EXPECT_TRUE(PathRules::EfsIsLegalName(""));
}

} // namespace
