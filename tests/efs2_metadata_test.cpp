// Operations on names: requests and responses byte for byte, and the effect of malformed responses.
#include "diag_fixture.h"

namespace {

/// The out-values of calls, preset so that unchanged ones can be recognised.
struct Outs {
    DWORD v[10] = {0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xF9};
    char sText[Diag_FTM::kEfs2TextSize] = "before";

    /// Returns the Outcome of a call with `iNumbers` numbers.
    std::string Text(bool bResult, size_t iNumbers) const {
        std::string text = Outcome(bResult);
        for (size_t i = 0; i < iNumbers; ++i)
            text += Outcome(true, v[i]).substr(4);
        return text;
    }
};

const Call Mkdir = [](Diag_FTM& d) { return Outcome(d.EFS2_DIAG_MKDIR("/a")); };
const Call Rmdir = [](Diag_FTM& d) { return Outcome(d.EFS2_DIAG_RMDIR("d")); };
const Call Unlink = [](Diag_FTM& d) { return Outcome(d.EFS2_DIAG_UNLINK("f %s")); };
const Call Rename = [](Diag_FTM& d, DWORD i = 0xF0) { return Outcome(d.EFS2_DIAG_RENAME("o", "n", i), i); };
const Call Chmod = [](Diag_FTM& d, DWORD i = 0xF0) { return Outcome(d.EFS2_DIAG_CHMOD(0x1A4, "f", i), i); };
const Call Access = [](Diag_FTM& d, DWORD i = 0xF0) { return Outcome(d.EFS2_DIAG_ACCESS(6, "f", i), i); };
const Call Stat = [](Diag_FTM& d, Outs o = {}) {
    auto& v = o.v;
    return o.Text(d.EFS2_DIAG_STAT("f", v[0], v[1], v[2], v[3], v[4], v[5], v[6]), 7);
};
const Call Statfs = [](Diag_FTM& d, Outs o = {}) {
    auto& v = o.v;
    return o.Text(d.EFS2_DIAG_STATFS("/", v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9]), 10);
};
const Call DevInfo = [](Diag_FTM& d, Outs o = {}, unsigned char iType = 0xF7) {
    auto& v = o.v;
    const bool bResult = d.EFS2_DIAG_DEV_INFO(v[0], v[1], v[2], v[3], v[4], v[5], v[6], iType, o.sText);
    v[7] = iType;
    return o.Text(bResult, 8) + " " + o.sText;
};
const Call ReadLink = [](Diag_FTM& d, Outs o = {}) {
    return Outcome(d.EFS2_DIAG_READ_LINK("l", o.sText), o.sText);
};
const Call CreateLink = [](Diag_FTM& d) { return Outcome(d.EFS2_DIAG_CREATE_LINK("l", "t/u")); };
const Call ExtendedInfo = [](Diag_FTM& d, Outs o = {}, EFS2_EXT_Kind_Enum eKind = EFS2_EXT_Kind_Enum{0xF0}) {
    const bool bResult = d.EFS2_DIAG_EXTENDED_INFO(EFS2_EXT_QueryType_Enum{3}, eKind, o.v[1], o.sText);
    return Outcome(bResult, static_cast<int>(eKind), o.v[1], o.sText);
};
const Call GetAttributes = [](Diag_FTM& d, Outs o = {}) {
    return o.Text(d.DIAG_GET_FILE_ATTRIBUTES("/x", &o.v[0], &o.v[1], &o.v[2]), 3);
};
const Call SetAttributes = [](Diag_FTM& d) { return Outcome(d.DIAG_SET_FILE_ATTRIBUTES("/x", 0x11, 0x22)); };

const std::string kStatAnswer =
    "4B 13 0F 00 00 00 00 00 A4 81 00 00 00 03 00 00 01 00 00 00 51 00 00 00 52 00 00 00 53 00 00 00";

class Efs2MetadataTest : public DiagTest {};

TEST_F(Efs2MetadataTest, RequestsResponsesAndLog) {
    // A command's number, followed by four-byte values.
    const auto answer = [](const char* sNumber, std::initializer_list<uint32_t> values = {},
                           const std::string& sTail = "") {
        return handset::ToHex(Packet(sNumber, values, sTail));
    };
    Check(Mkdir, "4B 13 09 00 FF 01 2F 61 00", answer("4B 13 09 00", {0}), "true",
          "QLIB_EFS2_DIAG_MKDIR( strDir = /a )");
    Check(Rmdir, "4B 13 0A 00 64 00", answer("4B 13 0A 00", {39}), "true",
          "QLIB_EFS2_DIAG_RMDIR( sFolderPath = d)");
    Check(Unlink, "4B 13 08 00 66 20 25 73 00", answer("4B 13 08 00", {2}), "true",
          "QLIB_EFS2_DIAG_UNLINK( sFilePath = f %s )");
    Check(Rename, "4B 13 0E 00 6F 00 6E 00", answer("4B 13 0E 00", {2}), "true 2",
          "QLIB_EFS2_DIAG_RENAME( sOldFilePath = o, sNewFilePath = n, iErrorNo = 240)");
    Check(Chmod, "4B 13 12 00 A4 01 00 00 66 00", answer("4B 13 12 00", {0}), "true 0",
          "QLIB_EFS2_DIAG_CHMOD( iMode = 420, sFilePath = f )");
    Check(Access, "4B 13 14 00 66 00", answer("4B 13 14 00", {13}), "true d",
          "QLIB_EFS2_DIAG_ACCESS( iPermissionBits = 0x6, sFilePath = f, iErrorNo = 240)");
    Check(Stat, "4B 13 0F 00 66 00", kStatAnswer, "true 0 81a4 300 1 51 52 53",
          "QLIB_EFS2_DIAG_STAT( sFilePath = f");
    Check(Statfs, "4B 13 13 00 2F 00", answer("4B 13 13 00", {0, 1, 2, 0xEEEE, 3, 4, 5, 6, 7, 8, 9}),
          "true 0 1 2 3 4 5 6 7 8 9", "QLIB_EFS2_DIAG_STATFS( sFilePath = /)");
    Check(DevInfo, "4B 13 15 00",
          answer("4B 13 15 00", {0, 1, 2, 3, 4, 5, 6}, std::string("\x07Nor\0rest", 9)),
          "true 0 1 2 3 4 5 6 7 Nor", "QLIB_EFS2_DIAG_DEV_INFO()");
    Check(ReadLink, "4B 13 07 00 6C 00", answer("4B 13 07 00", {0}, std::string("to/it\0", 6)), "true to/it",
          "QLIB_EFS2_DIAG_READ_LINK( sFilePath = l, sPointedFilePath = before)");
    Check(CreateLink, "4B 13 06 00 6C 00 74 2F 75 00", answer("4B 13 06 00", {17}), "true",
          "QLIB_EFS2_DIAG_CREATE_LINK( sFilePath = l, sPointedFilePath = t/u )");
    const char* sExtended = "4B 13 1D 00 03 00 00 00 00 00 00 00 00";
    Check(ExtendedInfo, sExtended, answer("4B 13 1D 00", {0, 0x2A}), "true 0 2a before", "");
    Check(ExtendedInfo, sExtended, answer("4B 13 1D 00", {1, 0}, std::string("yes\0", 4)), "true 1 f1 yes",
          "QLIB_EFS2_DIAG_EXTENDED_INFO( iQueryType = 3 )");
    Check(ExtendedInfo, sExtended, answer("4B 13 1D 00", {2, 1}, "no"), "false f0 f1 before", "");
    Check(GetAttributes, "59 07 03 2F 78 00", answer("59 07 00", {1, 2, 3}), "true 1 2 3", "");
    Check(SetAttributes, "59 08 03 2F 78 00 11 00 00 00 22 00 00 00", "59 08", "true", "");
}

TEST_F(Efs2MetadataTest, ResponsesOfUnexpectedLength) {
    const std::string sLong(4000, 'n');
    const std::tuple<Call, Bytes, std::string> cases[] = {
        {Mkdir, Packet("4B 13 09 00", {17}), "false"},
        // Fields are read backwards from the end of the response.
        {Stat, Packet(kStatAnswer, {0x54}), "true 81a4 300 1 51 52 53 54"},
        // A response that lacks a field changes no value. It does not mean that the entry is missing.
        {Stat, Packet("4B 13 0F 00", {0, 0x81A4, 300, 1, 0x51, 0x52}), "true f0 f1 f2 f3 f4 f5 f6"},
        {Rename, Packet("4B 13 0E 00", {1, 2}), "true 2"},
        // A response whose type has 4 bytes, one that ends early, and one without a complete value.
        {Statfs, Packet("4B 13 13 00", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}), "true 0 1 2 3 4 5 6 7 8 9"},
        {Statfs, Packet("4B 13 13 00", {2, 1}), "true 2 1 f2 f3 f4 f5 f6 f7 f8 f9"},
        {Statfs, Packet("4B 13 13 00 02"), "false f0 f1 f2 f3 f4 f5 f6 f7 f8 f9"},
        // Texts are cut to the caller's buffer, never read beyond the response, and empty when missing.
        {ReadLink, Packet("4B 13 07 00", {2}), "true "},
        {ReadLink, Packet("4B 13 07 00", {0}, sLong), "true " + sLong.substr(0, 511)},
        {ExtendedInfo, Packet("4B 13 1D 00", {1}), "true 1 f1 "},
        {ExtendedInfo, Packet("4B 13 1D 00", {0}), "false f0 f1 before"},
        {GetAttributes, Packet("59 07", {1, 2}), "true f0 f1 f2"},
        // The header alone.
        {GetAttributes, Packet("59 07"), "false f0 f1 f2"},
        {Stat, Packet("4B 13 0F 00"), "false f0 f1 f2 f3 f4 f5 f6"},
        {Rename, Packet("4B 13 0E 00"), "false f0"},
        {ReadLink, Packet("4B 13 07 00"), "false before"},
        {DevInfo, Packet("4B 13 15 00"), "false f0 f1 f2 f3 f4 f5 f6 f7 before"},
    };
    for (const auto& [call, answer, sOutcome] : cases)
        EXPECT_EQ(Answered(call, answer), sOutcome) << handset::ToHex(answer).substr(0, 60);
}

TEST(Efs2Names, LengthLimitsOfPathsAndNames) {
    struct Rule : Efs2Metadata {
        using Efs2Metadata::EfsIsLegalName;
    };
    const auto path = [](size_t iFolder, size_t iName) {
        return std::string(iFolder, 'f') + "/" + std::string(iName, 'n');
    };
    const std::pair<std::string, bool> cases[] = {
        {"", true},
        {path(47, 80), true},
        {path(48, 80), false},
        {path(46, 81), false},
        {path(127, 0), true},
        {std::string(80, 'n'), true},
        {std::string(81, 'n'), false},
    };
    for (const auto& [sPath, bLegal] : cases)
        EXPECT_EQ(Rule::EfsIsLegalName(sPath), bLegal) << sPath;
}

TEST_F(Efs2MetadataTest, PathsThatDoNotFitAreNotSent) {
    DWORD v[3] = {};
    m_phone.Answer("4B", Packet("4B 13 00 00", {0}));
    m_phone.Answer("59", Packet("59 07", {1, 2, 3}));
    const auto check = [&](size_t iLongest, const std::function<bool(const char*)>& call) {
        m_phone.phone.ClearRequests();
        EXPECT_TRUE(call(std::string(iLongest, 'p').c_str())) << iLongest;
        EXPECT_FALSE(call(std::string(iLongest + 1, 'p').c_str())) << iLongest;
        EXPECT_EQ(m_phone.Requests().size(), 1u);
    };
    check(249, [&](const char* sPath) { return m_diag.EFS2_DIAG_MKDIR(sPath); });
    check(4086, [&](const char* sPath) { return m_diag.EFS2_DIAG_RENAME("o", sPath, v[0]); });
    check(254,
          [&](const char* sPath) { return m_diag.DIAG_GET_FILE_ATTRIBUTES(sPath, &v[0], &v[1], &v[2]); });
    check(254, [&](const char* sPath) { return m_diag.DIAG_SET_FILE_ATTRIBUTES(sPath, 1, 2); });
}

} // namespace
