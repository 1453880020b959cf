// Copying, deleting, making and renaming: results for the host, and what is left on both sides.
#include <cstring>
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
        {512, {0, 100}, {0, 100}},
        {1536, {0, 100, 100}, {0, 33, 66, 100}},
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
        EXPECT_TRUE(m_local.Has("f"));
    }
    EXPECT_EQ(front.TransferSize, 0u);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
}

// A phone that reports a wrong size does not make the percentage leave its range.
TEST_F(FrontFiles, PercentageStaysInRange) {
    for (const uint32_t iClaimed : {7u, 0xFFFFFFFFu}) {
        m_phone.AddFile("f", Pattern(3000));
        m_phone.Answer(kStat, Packet(kStat, {0, 0x81A4, iClaimed, 1, 0, 0, 0}));
        EXPECT_EQ(Get("/f", m_local.Path("f"), FS_COPYFLAGS_OVERWRITE), FS_FILE_OK);
        const int iExpected = iClaimed == 7 ? 100 : 0;
        EXPECT_EQ(m_host.TakePercents(), (std::vector<int>{0, iExpected, iExpected}));
    }
}

TEST_F(FrontFiles, DownloadFlags) {
    const std::tuple<int, bool, int, bool> cases[] = {
        {0, false, FS_FILE_OK, true},
        {0, true, FS_FILE_EXISTSRESUMEALLOWED, true},
        {FS_COPYFLAGS_OVERWRITE, true, FS_FILE_OK, true},
        {FS_COPYFLAGS_RESUME, true, FS_FILE_OK, true},
        {FS_COPYFLAGS_MOVE, true, FS_FILE_EXISTSRESUMEALLOWED, true},
        {FS_COPYFLAGS_MOVE, false, FS_FILE_OK, false},
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
    // A link to nothing does not exist; one to a file does.
    std::filesystem::create_symlink(m_local.Path("nothing"), m_local.Path("dangling"));
    std::filesystem::create_symlink(m_local.Path("f"), m_local.Path("link"));
    m_phone.AddFile("d/f", Pattern(700));
    EXPECT_EQ(Get("/d/f", m_local.Path("link")), FS_FILE_EXISTSRESUMEALLOWED);
    EXPECT_EQ(Get("/d/f", m_local.Path("dangling")), FS_FILE_OK);
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
    EXPECT_EQ(Put(sLocal, "/new"), FS_FILE_OK);
    EXPECT_TRUE(m_local.Has("f"));
    for (const char* sNoFile : {"missing", ""}) // the second is the folder itself
        EXPECT_EQ(Put(m_local.Path(sNoFile), "/x"), FS_FILE_WRITEERROR);
    EXPECT_FALSE(m_phone.Exists("x"));
    std::string sHostPath = "\\d\\\\f", sSource = sLocal;
    FsPutFile(sSource.data(), sHostPath.data(), 0);
    EXPECT_EQ(sHostPath, "\\d\\\\f");
    FsDisconnect(nullptr);
    EXPECT_EQ(Put(sLocal, "/y"), FS_FILE_NOTFOUND);
}

TEST_F(FrontFiles, AbortedTransfers) {
    for (const int iPercent : {0, 50, 100}) {
        m_phone.AddFile("f", Pattern(5000));
        AbortAt(iPercent);
        EXPECT_EQ(Get("/f", m_local.Path("f"), FS_COPYFLAGS_MOVE), FS_FILE_USERABORT) << iPercent;
        EXPECT_FALSE(m_local.Has("f")) << iPercent;
        EXPECT_TRUE(m_phone.Exists("f")) << iPercent;
        EXPECT_EQ(m_phone.CountOf(kOpenFile), iPercent == 0 ? 0 : 1);
        m_phone.phone.ClearRequests();
    }
    m_host.onProgress = nullptr;
    EXPECT_EQ(Get("/f", m_local.Path("f"), FS_COPYFLAGS_MOVE), FS_FILE_OK); // an abort is forgotten
    for (const int iPercent : {50, 100}) {
        AbortAt(iPercent);
        EXPECT_EQ(Put(m_local.Path("f"), "/f"), FS_FILE_USERABORT) << iPercent;
        EXPECT_FALSE(m_phone.Exists("f")) << iPercent;
    }
    m_phone.AddFile("f", {1, 2, 3});
    AbortAt(0);
    EXPECT_EQ(Put(m_local.Path("f"), "/f", FS_COPYFLAGS_OVERWRITE), FS_FILE_USERABORT);
    EXPECT_EQ(m_phone.Content("f"), (Bytes{1, 2, 3}));
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
    m_phone.AddFile("f", {1, 2, 3});
    m_phone.phone.WithFiles([](handset::FileSystem& files) { files.SetFreeBlocks(1); });
    EXPECT_EQ(Put(sLocal, "/f", FS_COPYFLAGS_OVERWRITE), FS_FILE_WRITEERROR);
    EXPECT_EQ(m_phone.Content("f"), (Bytes{1, 2, 3}));
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
    m_phone.phone.Replug();
    EXPECT_EQ(Get("/f", m_local.Path("f"), iFlags), FS_FILE_OK);
    EXPECT_EQ(m_local.Read("f"), Pattern(9000));
}

TEST_F(FrontFiles, Renaming) {
    m_phone.AddFile("a", {1});
    m_phone.AddFile("b", {2});
    const std::tuple<const char*, const char*, BOOL, BOOL, int> cases[] = {
        {"/a", "/b", 0, 1, FS_FILE_NOTSUPPORTED},
        {"/a", "/b", 0x286E8700, 1, FS_FILE_NOTSUPPORTED}, // hosts fill one byte
        {"/a", "/b", 1, 0, FS_FILE_EXISTS},
        {"/a", "/b", 1, 0x286E8700, FS_FILE_EXISTS},
        {"/missing", "\\c", 1, 0, FS_FILE_WRITEERROR},
        {"\\a", "\\b", 0x286E8701, 1, FS_FILE_OK},
        {"/b", "/c", 1, 0, FS_FILE_OK},
    };
    for (const auto& [sOld, sNew, bMove, bOverWrite, iResult] : cases)
        EXPECT_EQ(Move(sOld, sNew, bMove, bOverWrite), iResult) << sOld << bMove;
    EXPECT_EQ(NamesIn("/"), Lines{"c"});
    EXPECT_EQ(m_phone.Content("c"), Bytes{1});
    FsDisconnect(nullptr);
    EXPECT_EQ(Move("/c", "/d", 1, 0), FS_FILE_READERROR);
    EXPECT_EQ(Move("/c", "/d", 1, 1), FS_FILE_NOTSUPPORTED);
    EXPECT_EQ(front.ContextHandle, nullptr);
}

TEST_F(FrontFiles, FoldersAndDeletion) {
    m_phone.AddFile("d/f", {});
    const auto check = [this](BOOL(HOST_CALL * pfnAct)(char*), std::string sPath, BOOL bResult,
                              const char* sThere, bool bThere) {
        EXPECT_EQ(pfnAct(sPath.data()), bResult) << sPath;
        EXPECT_EQ(m_phone.Exists(sThere), bThere) << sPath;
    };
    check(FsMkDir, "\\new", 1, "new", true);
    check(FsMkDir, "/new", kExistingFolderCountsAsMade, "new", true);
    check(FsMkDir, "/d/f", 0, "d/f", true);
    check(FsMkDir, "/no/such", 0, "no", false);
    check(FsRemoveDir, "/new", 1, "new", false);
    check(FsRemoveDir, "/d", 1, "d", true); // a refusal does not show
    check(FsDeleteFile, "/d/f", 1, "d/f", false);
    m_phone.phone.ClearRequests();
    char sPath[] = "\\d";
    EXPECT_EQ(FsSetAttr(sPath, 1), 0);
    EXPECT_EQ(FsSetTime(sPath, nullptr, nullptr, nullptr), 0);
    EXPECT_TRUE(m_phone.Requests().empty());
}

TEST_F(FrontFiles, UnusablePathsSendNothing) {
    const std::string sLocal = m_local.Write("f", {1});
    std::string sLong = "/" + std::string(1023, 'a');
    m_phone.phone.ClearRequests();
    for (char* sBad : {static_cast<char*>(nullptr), sLong.data()}) {
        std::string sGood = "/good";
        std::string sFile = sLocal;
        EXPECT_EQ(FsGetFile(sBad, sFile.data(), 0, nullptr), FS_FILE_WRITEERROR);
        EXPECT_EQ(FsPutFile(sFile.data(), sBad, 0), FS_FILE_WRITEERROR);
        EXPECT_EQ(FsRenMovFile(sBad, sGood.data(), 1, 1, nullptr), FS_FILE_WRITEERROR);
        EXPECT_EQ(FsRenMovFile(sGood.data(), sBad, 1, 1, nullptr), FS_FILE_WRITEERROR);
        for (const auto pfnAct : {FsDeleteFile, FsMkDir, FsRemoveDir})
            EXPECT_EQ(pfnAct(sBad), 0);
        EXPECT_EQ(FsSetAttr(sBad, 0), 0);
        EXPECT_EQ(FsGetFile(sGood.data(), nullptr, 1, nullptr), FS_FILE_WRITEERROR);
        EXPECT_EQ(FsPutFile(nullptr, sGood.data(), 1), FS_FILE_WRITEERROR);
    }
    EXPECT_TRUE(m_phone.Requests().empty());
    // What the host's buffers hold but a request does not: nothing of it is opened.
    const std::string sWide = "/" + std::string(600, 'b');
    EXPECT_EQ(Get(sWide, m_local.Path("g")), FS_FILE_WRITEERROR);
    EXPECT_EQ(Put(sLocal, sWide), FS_FILE_WRITEERROR);
    EXPECT_EQ(m_phone.CountOf(kOpenFile), 0);
    EXPECT_EQ(Get("/good", std::string(5000, 'c')), FS_FILE_WRITEERROR);
}

TEST_F(FrontFiles, WithoutPhone) {
    const std::string sLocal = m_local.Write("f", {1});
    m_phone.phone.Unplug();
    FsDisconnect(nullptr);
    EXPECT_EQ(Get("/f", m_local.Path("g")), FS_FILE_WRITEERROR);
    EXPECT_EQ(Put(sLocal, "/f", FS_COPYFLAGS_OVERWRITE), FS_FILE_WRITEERROR);
    std::string sPath = "/f";
    for (const auto pfnAct : {FsDeleteFile, FsMkDir, FsRemoveDir})
        EXPECT_EQ(pfnAct(sPath.data()), 0);
    EXPECT_EQ(m_host.TakeLog().size(), 11u); // "DISCONNECTED", and twice a line for each of the five
}

// The host here passes texts that it goes on using, its "/" among them.
TEST_F(FrontFiles, TheHostsTextsStay) {
    WIN32_FIND_DATAA data;
    std::string sLocal = m_local.Path("none");
    std::string sOther = "/other";
    const std::function<void(char*)> calls[] = {
        [&](char* sPath) { FsFindClose(FsFindFirst(sPath, &data)); },
        [&](char* sPath) { FsGetFile(sPath, sLocal.data(), 0, nullptr); },
        [&](char* sPath) { FsPutFile(sLocal.data(), sPath, 0); },
        [&](char* sPath) { FsRenMovFile(sPath, sOther.data(), 1, 0, nullptr); },
        [&](char* sPath) { FsRenMovFile(sOther.data(), sPath, 1, 0, nullptr); },
        [](char* sPath) { FsDeleteFile(sPath); },
        [](char* sPath) { FsMkDir(sPath); },
        [](char* sPath) { FsRemoveDir(sPath); },
        [](char* sPath) { FsSetAttr(sPath, 0); },
        [](char* sPath) { FsSetTime(sPath, nullptr, nullptr, nullptr); },
    };
    for (const std::function<void(char*)>& call : calls) {
        std::string sText = "/d\\\\f//g/";
        call(sText.data());
        EXPECT_EQ(sText, "/d\\\\f//g/") << &call - calls;
    }
}

} // namespace
