// Files and directories as open objects, and names with the phone's verdict: requests and answers byte for
// byte, attempts, and what bad answers leave alone.
#include "diag_fixture.h"
#include "qlib/call_layer.h"

namespace {

const Call Open = [](Diag_FTM& d, LONG iFile = 0xF0, DWORD iErr = 0xF1) {
    return Outcome(d.EFS2_DIAG_OPEN("/x", 0x241, 0x1A4, iFile, iErr), iFile, iErr);
};
const Call Close = [](Diag_FTM& d, DWORD i = 0xF0) { return Outcome(d.EFS2_DIAG_CLOSE(7, i), i); };
const Call Read = [](Diag_FTM& d, DWORD iRead = 0xF0, DWORD iErr = 0xF1, std::string sData = "before") {
    auto* pData = reinterpret_cast<unsigned char*>(sData.data());
    return Outcome(d.EFS2_DIAG_READ(7, 0x1234, pData, 6, iRead, iErr), iRead, iErr, sData.c_str());
};
const Call Write = [](Diag_FTM& d, DWORD iWritten = 0xF0, DWORD iErr = 0xF1) {
    const unsigned char aData[] = {'a', 'b', 'c'};
    return Outcome(d.EFS2_DIAG_WRITE(7, 0x1234, aData, 3, iWritten, iErr), iWritten, iErr);
};
const Call OpenDir = [](Diag_FTM& d, DWORD iDir = 0xF0, DWORD iErr = 0xF1) {
    return Outcome(d.EFS2_DIAG_OPENDIR("", iDir, iErr), iDir, iErr);
};
const Call CloseDir = [](Diag_FTM& d, DWORD i = 0xF0) { return Outcome(d.EFS2_DIAG_CLOSEDIR(5, i), i); };
const Call ReadDir = [](Diag_FTM& d, DWORD iErr = 0xF1) {
    Efs2DirEntry e{0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, "before", false};
    const bool bResult = d.EFS2_DIAG_READDIR(5, 2, e, iErr);
    return Outcome(bResult, iErr, e.iType, e.iMode, e.iSize, e.iAtime, e.iMtime, e.iCtime, e.bNameIsCut) +
           " " + e.sName;
};
const Call MakeDir = [](Diag_FTM& d, DWORD i = 0xF0) {
    return Outcome(d.EFS2_DIAG_MAKE_DIRECTORY("d", 0x1C0, i), i);
};
const Call RemoveDir = [](Diag_FTM& d, DWORD i = 0xF0) {
    return Outcome(d.EFS2_DIAG_REMOVE_DIRECTORY("d", i), i);
};
const Call RemoveFile = [](Diag_FTM& d, DWORD i = 0xF0) {
    return Outcome(d.EFS2_DIAG_REMOVE_FILE("f %s", i), i);
};
const Call MakeLink = [](Diag_FTM& d, DWORD i = 0xF0) {
    return Outcome(d.EFS2_DIAG_MAKE_LINK("l", "t/u", i), i);
};
const Call LinkTarget = [](Diag_FTM& d, DWORD i = 0xF0) {
    char sTarget[Diag_FTM::kEfs2TextSize] = "before";
    const bool bResult = d.EFS2_DIAG_LINK_TARGET("l", sTarget, i);
    return Outcome(bResult, i) + " " + sTarget;
};

const std::string kUntouchedEntry = "f2 f3 f4 f5 f6 f7 0 before";

class Efs2OpenObjectsTest : public DiagTest {};

/// One answer as the fixture takes it.
std::string Text(const char* sBegin, std::initializer_list<uint32_t> values, const std::string& sTail = "") {
    return handset::ToHex(Packet(sBegin, values, sTail));
}

TEST_F(Efs2OpenObjectsTest, NamesOnTheWire) {
    Check(MakeDir, "4B 13 09 00 C0 01 64 00", Text("4B 13 09 00", {17}), "true 11",
          "QLIB_EFS2_DIAG_MAKE_DIRECTORY( sFolderPath = d, iMode = 0x1C0 )");
    Check(RemoveDir, "4B 13 0A 00 64 00", Text("4B 13 0A 00", {39}), "true 27",
          "QLIB_EFS2_DIAG_REMOVE_DIRECTORY( sFolderPath = d )");
    Check(RemoveFile, "4B 13 08 00 66 20 25 73 00", Text("4B 13 08 00", {0}), "true 0",
          "QLIB_EFS2_DIAG_REMOVE_FILE( sFilePath = f %s )");
    Check(MakeLink, "4B 13 06 00 6C 00 74 2F 75 00", Text("4B 13 06 00", {0}), "true 0",
          "QLIB_EFS2_DIAG_MAKE_LINK( sFilePath = l, sPointedFilePath = t/u )");
    Check(LinkTarget, "4B 13 07 00 6C 00", Text("4B 13 07 00", {0}, std::string("to/it\0", 6)),
          "true 0 to/it", "QLIB_EFS2_DIAG_LINK_TARGET( sFilePath = l )");
    EXPECT_EQ(Answered(LinkTarget, Packet("4B 13 07 00", {22}, "not this")), "true 16 before");
    EXPECT_EQ(m_diag.EFS2_LastFailure().iErrorNo, 22u);
    for (const Call& call : {MakeDir, RemoveDir, RemoveFile, MakeLink})
        EXPECT_EQ(Answered(call, Hex("4B 13 08 00 00 00")), "false f0"); // ends within the error number
    EXPECT_EQ(m_diag.EFS2_LastFailure().eKind, OperationFailure::Kind::UnusableResponse);
}

TEST_F(Efs2OpenObjectsTest, FilesAndDirectoriesOnTheWire) {
    const struct {
        Call call;
        std::string sRequest;
        Bytes answer;
        std::string sOutcome;
        std::string sOperation;
    } rows[] = {
        {Open, "4B 13 02 00 41 02 00 00 A4 01 00 00 2F 78 00", Packet(kOpenFile, {9, 0}), "true 9 0",
         "QLIB_EFS2_DIAG_OPEN( sFilePath = /x, iFlags = 0x241, iMode = 0x1A4 )"},
        {Read, "4B 13 04 00 07 00 00 00 06 00 00 00 34 12 00 00", Packet(kRead, {7, 0x1234, 4, 0}, "data+"),
         "true 4 0 datare", "QLIB_EFS2_DIAG_READ( iDescriptor = 7, iOffset = 4660, iSize = 6 )"},
        {Write, "4B 13 05 00 07 00 00 00 34 12 00 00 61 62 63", Packet(kWrite, {7, 0x1234, 2, 0}), "true 2 0",
         "QLIB_EFS2_DIAG_WRITE( iDescriptor = 7, iOffset = 4660, iSize = 3 )"},
        {Close, "4B 13 03 00 07 00 00 00", Packet(kCloseFile, {0}), "true 0",
         "QLIB_EFS2_DIAG_CLOSE( iDescriptor = 7 )"},
        {OpenDir, "4B 13 0B 00 2F 00", Packet(kOpenFolder, {5, 0}), "true 5 0",
         "QLIB_EFS2_DIAG_OPENDIR( sFolderPath =  )"},
        {ReadDir, "4B 13 0C 00 05 00 00 00 02 00 00 00",
         Packet(kReadFolder, {5, 2, 0, 3, 0x81A4, 300, 0x51, 0x52, 0x53}, std::string("name\0", 5)),
         "true 0 3 81a4 12c 51 52 53 0 name", "QLIB_EFS2_DIAG_READDIR( iDirectory = 5, iSequence = 2 )"},
        {CloseDir, "4B 13 0D 00 05 00 00 00", Packet(kCloseFolder, {0}), "true 0",
         "QLIB_EFS2_DIAG_CLOSEDIR( iDirectory = 5 )"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Answered(row.call, row.answer), row.sOutcome);
        EXPECT_EQ(m_phone.Requests(), Lines{row.sRequest});
        EXPECT_TRUE(m_log.Has(LOG_FN, row.sOperation)) << row.sOperation;
    }
}

/// What the phone refuses, or answers so that it cannot be used; how often it was asked.
TEST_F(Efs2OpenObjectsTest, RefusalsAndUnusableAnswers) {
    const std::string sName(216, 'n');
    const std::tuple<Call, Bytes, size_t, std::string> cases[] = {
        {Open, Packet(kOpenFile, {3, 13}), 5, "true f0 d"},
        {Open, Packet(kOpenFile, {3}), 5, "false f0 f1"},
        {Close, Packet(kCloseFile, {9}), 5, "true 9"},
        {Close, Packet(kCloseFile), 5, "false f0"},
        {Read, Packet(kRead, {7, 0, 6, 9}, "refuse"), 1, "true f0 9 before"},
        {Read, Packet(kRead, {7, 0, 6, 0}, "short"), 1, "false f0 f1 before"},
        {Read, Packet(kRead, {7, 0, 7, 0}, "toolong"), 1, "false f0 f1 before"},
        {Read, Packet(kRead, {7, 0, 6}), 1, "false f0 f1 before"},
        {Write, Packet(kWrite, {7, 0, 0xFFFFFFFF, 28}), 5, "true f0 1c"},
        {Write, Packet(kWrite, {7, 0, 0, 0}), 5, "false f0 f1"},
        {Write, Packet(kWrite, {7, 0, 4, 0}), 5, "false f0 f1"},
        {Write, Packet(kWrite, {7, 0, 3}), 5, "false f0 f1"},
        {OpenDir, Packet(kOpenFolder, {5, 20}), 5, "true f0 14"},
        {CloseDir, Packet(kCloseFolder, {9}), 5, "true 9"},
        {ReadDir, Packet(kReadFolder, {5, 2, 9}), 5, "true 9 " + kUntouchedEntry},
        // No handle, a name that does not end, and one that the longest answer cannot hold.
        {ReadDir, Packet(kReadFolder, {0, 2, 0, 0, 0, 0, 0, 0, 0}, std::string("n\0", 2)), 5,
         "false f1 " + kUntouchedEntry},
        {ReadDir, Packet(kReadFolder, {5, 2, 0, 0, 0, 0, 0, 0, 0}, "n"), 5, "false f1 " + kUntouchedEntry},
        {ReadDir, Packet(kReadFolder, {5, 2, 0, 0, 0, 0, 0, 0, 0}, sName + "more"), 1,
         "true 0 0 0 0 0 0 0 1 " + sName},
    };
    for (const auto& [call, answer, iRequests, sOutcome] : cases) {
        EXPECT_EQ(Answered(call, answer), sOutcome) << handset::ToHex(answer).substr(0, 80);
        EXPECT_EQ(m_phone.Requests().size(), iRequests) << handset::ToHex(answer).substr(0, 80);
        const auto eKind = m_diag.EFS2_LastFailure().eKind;
        EXPECT_EQ(eKind == OperationFailure::Kind::UnusableResponse, sOutcome.starts_with("false"));
    }
}

/// With a real file: a refusal once, an answer lost, blocks clipped, and the flat functions.
TEST_F(Efs2OpenObjectsTest, ThroughTheFlatFunctions) {
    m_phone.AddFile("f", Pattern(2000));
    EXPECT_TRUE(m_diag.ClosePort());
    void* const hPhone = QLIB_ConnectPort(1);
    LONG iFile = -1;
    DWORD iErr = 0xF0;
    DWORD iDone = 0;
    Bytes data(4000);
    m_phone.Misbehave(Action::Refuse, kOpenFile, 4, 13);
    ASSERT_TRUE(QLIB_EFS2_DIAG_OPEN(hPhone, "f", 2, 0, &iFile, &iErr));
    EXPECT_EQ(iErr, 0u);
    ASSERT_TRUE(QLIB_EFS2_DIAG_READ(hPhone, iFile, 100, data.data(), 4000, &iDone, &iErr));
    EXPECT_EQ(iDone, Diag_FTM::kEfs2MostRead);
    EXPECT_TRUE(std::equal(data.begin(), data.begin() + 1536, Pattern(2000).begin() + 100));
    m_phone.Misbehave(Action::Drop, kWrite);
    ASSERT_TRUE(QLIB_EFS2_DIAG_WRITE(hPhone, iFile, 1990, data.data(), 4000, &iDone, &iErr));
    EXPECT_EQ(iDone, Diag_FTM::kEfs2MostWritten);
    EXPECT_EQ(m_phone.Content("f").size(), 1990u + 512);
    EXPECT_FALSE(QLIB_EFS2_DIAG_WRITE(hPhone, iFile, 0, data.data(), 0, &iDone, &iErr));
    EXPECT_FALSE(QLIB_EFS2_DIAG_WRITE(hPhone, iFile, 0, nullptr, 1, &iDone, &iErr));
    EXPECT_TRUE(QLIB_EFS2_DIAG_CLOSE(hPhone, iFile, &iErr));
    EXPECT_TRUE(QLIB_EFS2_DIAG_MAKE_DIRECTORY(hPhone, "d", 0700, &iErr));
    EXPECT_TRUE(QLIB_EFS2_DIAG_MAKE_LINK(hPhone, "d/l", "../f", &iErr));
    EXPECT_TRUE(QLIB_EFS2_DIAG_REMOVE_DIRECTORY(hPhone, "d", &iErr));
    EXPECT_EQ(iErr, 39u);
    DWORD iDirectory = 0;
    Efs2DirEntry entry;
    ASSERT_TRUE(QLIB_EFS2_DIAG_OPENDIR(hPhone, "d", &iDirectory, &iErr));
    ASSERT_TRUE(QLIB_EFS2_DIAG_READDIR(hPhone, iDirectory, 1, &entry, &iErr));
    EXPECT_EQ(std::string(entry.sName), "l");
    EXPECT_EQ(entry.iType, EFS2_ENTRY_LINK);
    EXPECT_TRUE(QLIB_EFS2_DIAG_CLOSEDIR(hPhone, iDirectory, &iErr));
    char sTarget[Diag_FTM::kEfs2TextSize];
    EXPECT_TRUE(QLIB_EFS2_DIAG_LINK_TARGET(hPhone, "d/l", sTarget, &iErr));
    EXPECT_STREQ(sTarget, "../f");
    EXPECT_TRUE(QLIB_EFS2_DIAG_REMOVE_FILE(hPhone, "d/l", &iErr));
    EXPECT_TRUE(QLIB_EFS2_DIAG_REMOVE_DIRECTORY(hPhone, "d", &iErr));
    EXPECT_EQ(iErr, 0u);
    EXPECT_FALSE(m_phone.Exists("d"));
    EXPECT_EQ(m_phone.OpenCount(), 0u);
    QLIB_DisconnectPort(hPhone);
}

} // namespace
