// The operations on names: requests, answers and log lines byte for byte, and what bad answers do.
#include <functional>
#include <sstream>

#include "phone_fixture.h"

namespace {

/// One call with room for its out-values; how many values it gives back, and whether a text too.
struct Call {
    size_t iValues;
    bool bText;
    bool (*call)(Diag_FTM& diag, DWORD* v, char* sText);
};

const Call Mkdir{0, false, [](Diag_FTM& d, DWORD*, char*) { return d.EFS2_DIAG_MKDIR("/a"); }};
const Call Rmdir{0, false, [](Diag_FTM& d, DWORD*, char*) { return d.EFS2_DIAG_RMDIR("d"); }};
const Call Unlink{0, false, [](Diag_FTM& d, DWORD*, char*) { return d.EFS2_DIAG_UNLINK("f %s"); }};
const Call Rename{1, false, [](Diag_FTM& d, DWORD* v, char*) { return d.EFS2_DIAG_RENAME("o", "n", v[0]); }};
const Call Chmod{1, false, [](Diag_FTM& d, DWORD* v, char*) { return d.EFS2_DIAG_CHMOD(0x1A4, "f", v[0]); }};
const Call Access{1, false, [](Diag_FTM& d, DWORD* v, char*) { return d.EFS2_DIAG_ACCESS(6, "f", v[0]); }};
const Call Stat{7, false, [](Diag_FTM& d, DWORD* v, char*) {
                    return d.EFS2_DIAG_STAT("f", v[0], v[1], v[2], v[3], v[4], v[5], v[6]);
                }};
const Call Statfs{10, false, [](Diag_FTM& d, DWORD* v, char*) {
                      return d.EFS2_DIAG_STATFS("/", v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8],
                                                v[9]);
                  }};
const Call DevInfo{8, true, [](Diag_FTM& d, DWORD* v, char* s) {
                       auto iType = static_cast<unsigned char>(v[7]);
                       const bool bDone =
                           d.EFS2_DIAG_DEV_INFO(v[0], v[1], v[2], v[3], v[4], v[5], v[6], iType, s);
                       v[7] = iType;
                       return bDone;
                   }};
const Call ReadLink{0, true, [](Diag_FTM& d, DWORD*, char* s) { return d.EFS2_DIAG_READ_LINK("l", s); }};
const Call CreateLink{0, false,
                      [](Diag_FTM& d, DWORD*, char*) { return d.EFS2_DIAG_CREATE_LINK("l", "t/u"); }};
const Call ExtendedInfo{2, true, [](Diag_FTM& d, DWORD* v, char* s) {
                            auto eKind = static_cast<EFS2_EXT_Kind_Enum>(v[0]);
                            const bool bDone =
                                d.EFS2_DIAG_EXTENDED_INFO(EFS2_EXT_QueryType_Enum{3}, eKind, v[1], s);
                            v[0] = static_cast<DWORD>(eKind);
                            return bDone;
                        }};
const Call GetAttributes{3, false, [](Diag_FTM& d, DWORD* v, char*) {
                             return d.DIAG_GET_FILE_ATTRIBUTES("/x", &v[0], &v[1], &v[2]);
                         }};
const Call SetAttributes{
    0, false, [](Diag_FTM& d, DWORD*, char*) { return d.DIAG_SET_FILE_ATTRIBUTES("/x", 0x11, 0x22); }};

const Bytes kStatAnswer = Packet("4B 13 0F 00", {0, 0x81A4, 0x300, 1, 0x51, 0x52, 0x53});

class Efs2MetadataTest : public PhoneTest {
protected:
    /// The result and the out-values, in hex, as one text. They are preset, so that what was left alone
    /// shows.
    std::string Make(const Call& call) {
        DWORD v[10] = {0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xF9};
        char sText[Diag_FTM::kEfs2TextSize] = "before";
        std::ostringstream text;
        text << (call.call(m_diag, v, sText) ? "true" : "false") << std::hex;
        for (size_t i = 0; i < call.iValues; ++i)
            text << ' ' << v[i];
        return text.str() + (call.bText ? std::string(" ") + sText : "");
    }
    /// The same when `packet` is the answer to every request.
    std::string Answered(const Call& call, const Bytes& packet) {
        m_phone.Answer("", packet);
        return Make(call);
    }
};

TEST_F(Efs2MetadataTest, RequestsAnswersAndLog) {
    // The call, its request, the answer, what comes out, and the log lines of the operation and its result.
    const auto check = [this](const Call& call, const char* sRequest, const Bytes& answer,
                              const char* sOutcome, Lines operation = {}, Lines result = {}) {
        m_log.Clear();
        m_phone.phone.ClearRequests();
        EXPECT_EQ(Answered(call, answer), sOutcome) << sRequest;
        EXPECT_EQ(m_phone.Requests(), Lines{sRequest});
        EXPECT_EQ(m_log.Of(LOG_FN), operation);
        EXPECT_EQ(m_log.Of(LOG_RET), result);
    };
    check(Mkdir, "4B 13 09 00 FF 01 2F 61 00", Packet("4B 13 09 00", {0}), "true",
          {"QLIB_EFS2_DIAG_MKDIR( strDir = /a )"}, {"QLIB_EFS2_DIAG_MKDIR() - Results mkdir_rsp.errnum = 0"});
    check(Rmdir, "4B 13 0A 00 64 00", Packet("4B 13 0A 00", {39}), "true",
          {"QLIB_EFS2_DIAG_RMDIR( sFolderPath = d)"});
    check(Unlink, "4B 13 08 00 66 20 25 73 00", Packet("4B 13 08 00", {2}), "true",
          {"QLIB_EFS2_DIAG_UNLINK( sFilePath = f %s )"});
    check(Rename, "4B 13 0E 00 6F 00 6E 00", Packet("4B 13 0E 00", {2}), "true 2",
          {"QLIB_EFS2_DIAG_RENAME( sOldFilePath = o, sNewFilePath = n, iErrorNo = 240)"});
    check(Chmod, "4B 13 12 00 A4 01 00 00 66 00", Packet("4B 13 12 00", {0}), "true 0",
          {"QLIB_EFS2_DIAG_CHMOD( iMode = 420, sFilePath = f )"});
    check(Access, "4B 13 14 00 66 00", Packet("4B 13 14 00", {13}), "true d",
          {"QLIB_EFS2_DIAG_ACCESS( iPermissionBits = 0x6, sFilePath = f, iErrorNo = 240)"});
    check(Stat, "4B 13 0F 00 66 00", kStatAnswer, "true 0 81a4 300 1 51 52 53",
          {"QLIB_EFS2_DIAG_STAT( sFilePath = f"},
          {"QLIB_EFS2_DIAG_STAT( \t\t\tsFilePath = f, iErrorNo = 0x0, iMode = 0x81A4, iSize = 0x300, "
           "\t\t\tiNlink = 0x1, iAtime = 0x51, iMtime = 0x52, iCtime  = 0x53)"});
    check(Statfs, "4B 13 13 00 2F 00", Packet("4B 13 13 00", {0, 1, 2, 0xEEEE, 3, 4, 5, 6, 7, 8, 9}),
          "true 0 1 2 3 4 5 6 7 8 9", {"QLIB_EFS2_DIAG_STATFS( sFilePath = /)"},
          {"QLIB_EFS2_DIAG_STATFS( \t\t\tsFilePath = /, iErrorNo  = 0, iFS_ID  = 1, iFS_Type  = 2, "
           "iBlockSize  = 3, \t\t\tiTotalBlocks  = 4, iAvailBlocks  = 5, iFreeBlocks  = 6, "
           "iMaxFileSize  = 7,\t\t\tiNfiles  = 8, iMaxNfiles  = 9)"});
    check(DevInfo, "4B 13 15 00",
          Packet("4B 13 15 00", {0, 1, 2, 3, 4, 5, 6}, std::string("\x07Nor\0rest", 9)),
          "true 0 1 2 3 4 5 6 7 Nor", {"QLIB_EFS2_DIAG_DEV_INFO()"},
          {"QLIB_EFS2_DIAG_DEV_INFO( \t\t\tiErrorNo = 0x0, iTotalNumOfBlocks = 0x1, "
           "iNumPagesPerBlock = 0x2, \t\t\tiPageSize = 0x3, iTotalPageSize = 0x4, iMakerId = 0x5, "
           "iDeviceId = 0x6, \t\t\tiDeviceType = 0x7, psDeviceName  = Nor)"});
    check(ReadLink, "4B 13 07 00 6C 00", Packet("4B 13 07 00", {0}, std::string("to/it\0", 6)), "true to/it",
          {"QLIB_EFS2_DIAG_READ_LINK( sFilePath = l, sPointedFilePath = before)"});
    check(CreateLink, "4B 13 06 00 6C 00 74 2F 75 00", Packet("4B 13 06 00", {17}), "true",
          {"QLIB_EFS2_DIAG_CREATE_LINK( sFilePath = l, sPointedFilePath = t/u )"});
    const char* sExtended = "4B 13 1D 00 03 00 00 00 00 00 00 00 00";
    const std::string sExtendedLine = "QLIB_EFS2_DIAG_EXTENDED_INFO( iQueryType = 3 )";
    check(ExtendedInfo, sExtended, Packet("4B 13 1D 00", {0, 0x2A}), "true 0 2a before", {sExtendedLine},
          {"QLIB_EFS2_DIAG_EXTENDED_INFO( iReturnInt = 42 )"});
    check(ExtendedInfo, sExtended, Packet("4B 13 1D 00", {1, 0}, std::string("yes\0", 4)), "true 1 f1 yes",
          {sExtendedLine}, {"QLIB_EFS2_DIAG_EXTENDED_INFO( sReturnString = yes )"});
    check(ExtendedInfo, sExtended, Packet("4B 13 1D 00", {2, 1}, "no"), "false f0 f1 before", {sExtendedLine},
          {"QLIB_EFS2_DIAG_EXTENDED_INFO( ) -- Error: invalid data return type"});
    check(GetAttributes, "59 07 03 2F 78 00", Packet("59 07 00", {1, 2, 3}), "true 1 2 3");
    check(SetAttributes, "59 08 03 2F 78 00 11 00 00 00 22 00 00 00", Packet("59 08"), "true");
}

TEST_F(Efs2MetadataTest, AnswersOfUnexpectedLength) {
    const std::string sLong(4000, 'n');
    const std::tuple<Call, Bytes, std::string> cases[] = {
        {Mkdir, Packet("4B 13 09 00", {17}), "false"},
        {Mkdir, Packet("4B 13 09 00"), "false"},
        // The last fields stay where they are, seen from the end.
        {Stat, Packet(handset::ToHex(kStatAnswer), {0x54}), "true 81a4 300 1 51 52 53 54"},
        // One that lacks a field says nothing, least of all that there is no such entry.
        {Stat, Packet("4B 13 0F 00", {0, 0x81A4, 300, 1, 0x51, 0x52}), "true f0 f1 f2 f3 f4 f5 f6"},
        {Rename, Packet("4B"), "true f0"},
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
        {DevInfo, Packet("4B 13 15 00", {5}), "true 5 f1 f2 f3 f4 f5 f6 f7 "},
        {DevInfo, Packet("4B 13 15 00", {0, 1, 2, 3, 4, 5, 6}, "\x07" + sLong),
         "true 0 1 2 3 4 5 6 7 " + sLong.substr(0, 511)},
        {ExtendedInfo, Packet("4B 13 1D 00", {1}), "true 1 f1 "},
        {ExtendedInfo, Packet("4B 13 1D 00", {0}), "false f0 f1 before"},
        {ExtendedInfo, Packet("4B 13 1D 00"), "false f0 f1 before"},
        {GetAttributes, Packet("59 07", {1, 2}), "true f0 f1 f2"},
    };
    for (const auto& [call, answer, sOutcome] : cases)
        EXPECT_EQ(Answered(call, answer), sOutcome) << handset::ToHex(answer).substr(0, 60);
}

TEST_F(Efs2MetadataTest, NoAnswerAndProtocolErrorsChangeNothing) {
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 30);
    for (const Action eAction : {Action::Ignore, Action::ProtocolError, Action::Unplug}) {
        m_phone.phone.Behave();
        m_phone.Misbehave(eAction, "", -1, 0x13);
        for (Call call : {Mkdir, Rmdir, Unlink, CreateLink, SetAttributes, Rename, Chmod, Access, ReadLink,
                          GetAttributes, Stat, Statfs, DevInfo, ExtendedInfo}) {
            const std::string sOutcome = Make(call);
            call.call = [](Diag_FTM&, DWORD*, char*) { return false; };
            EXPECT_EQ(sOutcome, Make(call));
        }
    }
    EXPECT_TRUE(m_log.Of(LOG_RET).empty());
}

TEST_F(Efs2MetadataTest, PathsThatDoNotFitAreNotSent) {
    const auto path = [](size_t iLength) { return std::string(iLength, 'p'); };
    DWORD v[3] = {};
    m_phone.Answer("4B", Packet("4B 13 00 00", {0}));
    m_phone.Answer("59", Packet("59 07"));
    const auto check = [&](size_t iLongest, const std::function<bool(const char*)>& call) {
        m_phone.phone.ClearRequests();
        EXPECT_TRUE(call(path(iLongest).c_str())) << iLongest;
        EXPECT_FALSE(call(path(iLongest + 1).c_str())) << iLongest;
        EXPECT_EQ(m_phone.Requests().size(), 1u);
    };
    check(249, [&](const char* sPath) { return m_diag.EFS2_DIAG_MKDIR(sPath); });
    check(4086, [&](const char* sPath) { return m_diag.EFS2_DIAG_RENAME("o", sPath, v[0]); });
    check(254,
          [&](const char* sPath) { return m_diag.DIAG_GET_FILE_ATTRIBUTES(sPath, &v[0], &v[1], &v[2]); });
    check(254, [&](const char* sPath) { return m_diag.DIAG_SET_FILE_ATTRIBUTES(sPath, 1, 2); });
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_EFS2_DIAG_MKDIR( strDir = " + path(250) + " )"));
}

struct PathRules : Efs2Metadata {
    using Efs2Metadata::EfsFnSplit;
    using Efs2Metadata::EfsIsLegalName;
};

TEST(Efs2PathRulesTest, SplitAndLegalNames) {
    for (const auto& [sDir, sName] :
         {std::pair("/brew/mod/", "a.txt"), {"", "a.txt"}, {"/", ""}, {"abc/", ""}, {"", ""}}) {
        char aDir[32], aName[32];
        PathRules::EfsFnSplit((std::string(sDir) + sName).c_str(), aDir, aName);
        EXPECT_STREQ(aDir, sDir);
        EXPECT_STREQ(aName, sName);
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
