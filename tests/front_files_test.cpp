// Copying, deleting, making and renaming: results for the host, and what remains on both sides.
#include <functional>

#include "host_fixture.h"

namespace {

class FrontFiles : public HostTest {
protected:
    FrontFiles() { Connect(); }

    /// Aborts at the first progress report of at least that many percent.
    void AbortAt(int iPercent) {
        m_host.onProgress = [=](int iNow) { return iNow >= iPercent ? 1 : 0; };
    }

    LocalFolder m_local;
};

TEST_F(FrontFiles, PercentagesOfManySizes) {
    const std::tuple<size_t, std::vector<int>, std::vector<int>> cases[] = {
        // downloaded, uploaded
        {0, {0}, {0}},
        {3073, {0, 49, 99, 100}, {0, 16, 33, 49, 66, 83, 99, 100}},
    };
    for (const auto& [iSize, downloaded, uploaded] : cases) {
        m_phone.AddFile("f", Pattern(iSize));
        EXPECT_EQ(Get("/f", m_local.Path("f"), FS_COPYFLAGS_OVERWRITE), FS_FILE_OK);
        EXPECT_EQ(m_local.Read("f"), Pattern(iSize));
        EXPECT_EQ(m_host.TakePercents(), downloaded) << iSize;
        m_phone.AddFile("f", {});
        EXPECT_EQ(Put(m_local.Path("f"), "/f", FS_COPYFLAGS_RESUME), FS_FILE_OK);
        EXPECT_EQ(m_phone.Content("f"), Pattern(iSize));
        EXPECT_EQ(m_host.TakePercents(), uploaded) << iSize;
    }
}

TEST_F(FrontFiles, DownloadFlags) {
    const std::tuple<int, bool, int, bool> cases[] = {
        {0, false, FS_FILE_OK, true},
        {0, true, FS_FILE_EXISTSRESUMEALLOWED, true},
        {FS_COPYFLAGS_OVERWRITE, true, FS_FILE_OK, true},
        {FS_COPYFLAGS_RESUME, true, FS_FILE_OK, true},
        {FS_COPYFLAGS_MOVE, true, FS_FILE_EXISTSRESUMEALLOWED, true},
        {FS_COPYFLAGS_MOVE | FS_COPYFLAGS_OVERWRITE, true, FS_FILE_OK, false},
    };
    for (const auto& [iFlags, bExists, iResult, bStaysOnPhone] : cases) {
        m_phone.AddFile("d/f", Pattern(700));
        std::filesystem::remove(m_local.Path("f"));
        if (bExists)
            m_local.Write("f", {1});
        m_phone.phone.ClearRequests();
        EXPECT_EQ(Get("\\d\\f", m_local.Path("f"), iFlags), iResult) << iFlags << bExists;
        EXPECT_EQ(m_phone.Exists("d/f"), bStaysOnPhone) << iFlags << bExists;
        EXPECT_EQ(m_phone.Requests().empty(), iResult != FS_FILE_OK);
        EXPECT_EQ(m_local.Read("f"), iResult == FS_FILE_OK ? Pattern(700) : Bytes{1});
    }
}

TEST_F(FrontFiles, UploadFlags) {
    const std::string sLocal = m_local.Write("f", Pattern(600));
    const Bytes old{1, 2, 3};
    for (const int iFlags : {0, FS_COPYFLAGS_MOVE}) {
        m_phone.AddFile("f", old);
        EXPECT_EQ(Put(sLocal, "/f", iFlags), FS_FILE_EXISTSRESUMEALLOWED);
        EXPECT_EQ(m_phone.Content("f"), old);
        EXPECT_EQ(Put(sLocal, "/f", iFlags | FS_COPYFLAGS_OVERWRITE), FS_FILE_OK);
        EXPECT_EQ(m_phone.Content("f"), Pattern(600));
    }
    EXPECT_TRUE(m_local.Has("f"));
    for (const char* sNoFile : {"missing", ""}) // the second is the folder itself
        EXPECT_EQ(Put(m_local.Path(sNoFile), "/x"), FS_FILE_WRITEERROR);
    // A path that the host's buffers hold but a request does not: nothing is opened.
    m_phone.phone.ClearRequests();
    EXPECT_EQ(Put(sLocal, "/" + std::string(600, 'b'), FS_COPYFLAGS_OVERWRITE), FS_FILE_WRITEERROR);
    EXPECT_EQ(Put(sLocal, "/" + std::string(600, 'b')),
              FS_FILE_NOTFOUND); // the phone did not report "not there"
    EXPECT_EQ(m_phone.CountOf(kOpenFile), 0);
}

TEST_F(FrontFiles, AbortedTransfers) {
    for (const int iPercent : {0, 50, 100}) {
        m_phone.AddFile("f", Pattern(5000));
        AbortAt(iPercent);
        EXPECT_EQ(Get("/f", m_local.Path("f"), FS_COPYFLAGS_MOVE), FS_FILE_USERABORT) << iPercent;
        EXPECT_FALSE(m_local.Has("f")) << iPercent;
        EXPECT_TRUE(m_phone.Exists("f")) << iPercent;
    }
    m_host.onProgress = nullptr;
    EXPECT_EQ(Get("/f", m_local.Path("f"), FS_COPYFLAGS_MOVE),
              FS_FILE_OK); // the abort does not affect the next copy
    AbortAt(50);
    EXPECT_EQ(Put(m_local.Path("f"), "/f"), FS_FILE_USERABORT);
    EXPECT_FALSE(m_phone.Exists("f"));
    m_phone.AddFile("f", {1});
    AbortAt(0);
    EXPECT_EQ(Put(m_local.Path("f"), "/f", FS_COPYFLAGS_OVERWRITE), FS_FILE_USERABORT);
    EXPECT_EQ(m_phone.Content("f"), Bytes{1});
    EXPECT_EQ(m_phone.OpenCount(), 0u);
}

TEST_F(FrontFiles, FailedUploadDeletesOnlyWhatItWrote) {
    const std::string sLocal = m_local.Write("f", Pattern(3000));
    for (const auto& [eAction, sPrefix] :
         {std::pair(Action::Refuse, kOpenFile), {Action::ProtocolError, kStatFs}, {Action::Refuse, kWrite}}) {
        m_phone.AddFile("f", {1, 2, 3});
        m_phone.Misbehave(eAction, sPrefix, -1, 0x13);
        EXPECT_EQ(Put(sLocal, "/f", FS_COPYFLAGS_OVERWRITE), FS_FILE_WRITEERROR);
        EXPECT_EQ(m_phone.Exists("f"), sPrefix != kWrite) << sPrefix;
        m_phone.phone.Behave();
    }
}

TEST_F(FrontFiles, FailedMoveKeepsThePhonesFile) {
    m_phone.AddFile("f", Pattern(9000));
    const int iFlags = FS_COPYFLAGS_OVERWRITE | FS_COPYFLAGS_MOVE;
    EXPECT_EQ(Get("/missing", m_local.Path("f"), iFlags), FS_FILE_WRITEERROR);
    EXPECT_FALSE(m_local.Has("f"));
    EXPECT_EQ(Get("/f", "/dev/full", iFlags), FS_FILE_WRITEERROR);
    m_phone.Misbehave(Action::Unplug, kRead, 1, 0, 2);
    EXPECT_EQ(Get("/f", m_local.Path("f"), iFlags), FS_FILE_WRITEERROR);
    EXPECT_EQ(m_local.Read("f"), Pattern(3072));
    EXPECT_EQ(m_phone.CountOf(kUnlink), 0);
}

TEST_F(FrontFiles, Renaming) {
    m_phone.AddFile("a", {1});
    m_phone.AddFile("b", {2});
    const std::tuple<const char*, const char*, BOOL, BOOL, int> cases[] = {
        {"/a", "/b", 0x286E8700, 1, FS_FILE_NOTSUPPORTED}, // hosts set one byte
        {"/a", "/b", 1, 0x286E8700, FS_FILE_EXISTS},       {"/missing", "\\c", 1, 0, FS_FILE_WRITEERROR},
        {"\\a", "\\b", 0x286E8701, 1, FS_FILE_OK},         {"/b", "/c", 1, 0, FS_FILE_OK},
    };
    for (const auto& [sOld, sNew, bMove, bOverWrite, iResult] : cases)
        EXPECT_EQ(Move(sOld, sNew, bMove, bOverWrite), iResult) << sOld << bMove;
    EXPECT_EQ(NamesIn("/"), Lines{"c"});
    EXPECT_EQ(m_phone.Content("c"), Bytes{1});
}

TEST_F(FrontFiles, FoldersAndDeletion) {
    m_phone.AddFile("d/f", {});
    const auto check = [this](BOOL(HOST_CALL * pfnAct)(char*), std::string sPath, BOOL bResult, bool bThere) {
        EXPECT_EQ(pfnAct(sPath.data()), bResult) << sPath;
        EXPECT_EQ(m_phone.Exists(sPath), bThere) << sPath;
    };
    check(FsMkDir, "/new", 1, true);
    check(FsMkDir, "/new", kExistingFolderCountsAsMade, true);
    check(FsMkDir, "/d/f", 0, true);
    check(FsRemoveDir, "/new", 1, false);
    check(FsRemoveDir, "/d", 1, true); // the result does not show a refusal
    check(FsDeleteFile, "/d/f", 1, false);
}

// Unusable paths are not sent to the phone. The host continues to use the texts that it passes, such as "/".
TEST_F(FrontFiles, UnusablePathsAndNoPhone) {
    std::string sLocal = m_local.Write("f", {1}), sNew = m_local.Path("new"), sOther = "/other";
    WIN32_FIND_DATAA data;
    // The call, its result for an unusable path, its result without a phone.
    const std::tuple<std::function<int(char*)>, int, int> rows[] = {
        {[&](char* s) { return FsGetFile(s, sNew.data(), 0, nullptr); }, FS_FILE_WRITEERROR,
         FS_FILE_WRITEERROR},
        {[&](char* s) { return FsPutFile(sLocal.data(), s, 0); }, FS_FILE_WRITEERROR, FS_FILE_NOTFOUND},
        {[&](char* s) { return FsPutFile(sLocal.data(), s, 2); }, FS_FILE_WRITEERROR, FS_FILE_WRITEERROR},
        {[&](char* s) { return FsRenMovFile(s, sOther.data(), 1, 0, nullptr); }, FS_FILE_WRITEERROR,
         FS_FILE_READERROR},
        {[&](char* s) { return FsRenMovFile(sOther.data(), s, 1, 1, nullptr); }, FS_FILE_WRITEERROR,
         FS_FILE_NOTSUPPORTED},
        {[&](char* s) { return FsFindFirst(s, &data) != kNoListing; }, 0, 0},
        {FsDeleteFile, 0, 0},
        {FsMkDir, 0, 0},
        {FsRemoveDir, 0, 0},
        {[](char* s) { return FsSetAttr(s, 0); }, 0, 0},
    };
    std::string sLong = "/" + std::string(1023, 'a');
    m_phone.phone.ClearRequests();
    for (const auto& [call, iUnusable, _] : rows)
        for (char* sBad : {static_cast<char*>(nullptr), sLong.data()})
            EXPECT_EQ(call(sBad), iUnusable);
    EXPECT_TRUE(m_phone.Requests().empty());
    m_phone.phone.Unplug();
    FsDisconnect(nullptr);
    for (const auto& [call, _, iWithoutPhone] : rows) {
        std::string sText = "/d\\\\f//g/";
        EXPECT_EQ(call(sText.data()), iWithoutPhone);
        EXPECT_EQ(sText, "/d\\\\f//g/");
    }
}

} // namespace
