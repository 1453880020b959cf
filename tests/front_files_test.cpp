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

TEST_F(FrontFiles, DownloadsOfManySizes) {
    const struct {
        size_t iSize;
        std::vector<int> percents;
    } cases[] = {
        {0, {0}},
        {1, {0, 100}},
        {1535, {0, 100}},
        {1536, {0, 100, 100}},
        {3072, {0, 50, 100, 100}},
        {5000, {0, 30, 61, 92, 100}},
    };
    for (const auto& c : cases) {
        m_phone.AddFile("f", Pattern(c.iSize));
        EXPECT_EQ(Get("/f", m_local.Path("f"), FS_COPYFLAGS_OVERWRITE), FS_FILE_OK);
        EXPECT_EQ(m_local.Read("f"), Pattern(c.iSize));
        EXPECT_EQ(m_host.TakePercents(), c.percents) << c.iSize;
    }
    EXPECT_EQ(front.TransferSize, 0u);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
}

TEST_F(FrontFiles, UploadsOfManySizes) {
    const struct {
        size_t iSize;
        std::vector<int> percents;
    } cases[] = {
        {0, {0}},
        {512, {0, 100}},
        {1000, {0, 51, 100}},
        {2048, {0, 25, 50, 75, 100}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Put(m_local.Write("f", Pattern(c.iSize)), "/f", FS_COPYFLAGS_RESUME), FS_FILE_OK);
        EXPECT_EQ(m_phone.Content("f"), Pattern(c.iSize));
        EXPECT_EQ(m_host.TakePercents(), c.percents) << c.iSize;
        EXPECT_TRUE(m_local.Has("f"));
    }
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
    const struct {
        int iFlags;
        bool bExists;
        int iResult;
        bool bStaysOnPhone;
    } cases[] = {
        {0, false, FS_FILE_OK, true},
        {0, true, FS_FILE_EXISTSRESUMEALLOWED, true},
        {FS_COPYFLAGS_OVERWRITE, true, FS_FILE_OK, true},
        {FS_COPYFLAGS_RESUME, true, FS_FILE_OK, true},
        {FS_COPYFLAGS_MOVE, true, FS_FILE_EXISTSRESUMEALLOWED, true},
        {FS_COPYFLAGS_MOVE, false, FS_FILE_OK, false},
        {FS_COPYFLAGS_MOVE | FS_COPYFLAGS_OVERWRITE, true, FS_FILE_OK, false},
    };
    for (const auto& c : cases) {
        m_phone.AddFile("d/f", Pattern(700));
        std::filesystem::remove(m_local.Path("f"));
        if (c.bExists)
            m_local.Write("f", {1});
        m_phone.phone.ClearRequests();
        EXPECT_EQ(Get("\\d\\f", m_local.Path("f"), c.iFlags), c.iResult) << c.iFlags << c.bExists;
        EXPECT_EQ(m_phone.Exists("d/f"), c.bStaysOnPhone) << c.iFlags << c.bExists;
        EXPECT_EQ(m_phone.Requests().empty(), c.iResult != FS_FILE_OK);
        EXPECT_EQ(m_local.Read("f"), c.iResult == FS_FILE_OK ? Pattern(700) : Bytes{1});
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
    const char sName[] = "\\d\\\\f";
    char sHostPath[sizeof sName];
    std::memcpy(sHostPath, sName, sizeof sName);
    std::string sSource = sLocal;
    FsPutFile(sSource.data(), sHostPath, 0);
    EXPECT_STREQ(sHostPath, sName);
    FsDisconnect(nullptr);
    EXPECT_EQ(Put(sLocal, "/y"), FS_FILE_NOTFOUND);
}

TEST_F(FrontFiles, MissingPhoneFile) {
    EXPECT_EQ(Get("/missing", m_local.Path("f"), FS_COPYFLAGS_MOVE), FS_FILE_WRITEERROR);
    EXPECT_FALSE(m_local.Has("f"));
    EXPECT_EQ(m_phone.CountOf(kUnlink), 0);
}

TEST_F(FrontFiles, AbortedDownload) {
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
    EXPECT_EQ(Get("/f", m_local.Path("f")), FS_FILE_OK); // an abort is forgotten
    EXPECT_EQ(m_phone.OpenCount(), 0u);
}

TEST_F(FrontFiles, AbortedUpload) {
    const std::string sLocal = m_local.Write("f", Pattern(5000));
    for (const int iPercent : {50, 100}) {
        AbortAt(iPercent);
        EXPECT_EQ(Put(sLocal, "/f"), FS_FILE_USERABORT) << iPercent;
        EXPECT_FALSE(m_phone.Exists("f")) << iPercent;
    }
    m_phone.AddFile("f", {1, 2, 3});
    AbortAt(0);
    EXPECT_EQ(Put(sLocal, "/f", FS_COPYFLAGS_OVERWRITE), FS_FILE_USERABORT);
    EXPECT_EQ(m_phone.Content("f"), (Bytes{1, 2, 3}));
}

TEST_F(FrontFiles, FailedUploadDeletesOnlyWhatItWrote) {
    const std::string sLocal = m_local.Write("f", Pattern(3000));
    const struct {
        Action eAction;
        std::string sPrefix;
        bool bFileStays;
    } cases[] = {
        {Action::Refuse, kOpenFile, true},
        {Action::ProtocolError, kStatFs, true},
        {Action::Refuse, kWrite, false},
    };
    for (const auto& c : cases) {
        m_phone.AddFile("f", {1, 2, 3});
        m_phone.Misbehave(c.eAction, c.sPrefix, -1, 0x13);
        EXPECT_EQ(Put(sLocal, "/f", FS_COPYFLAGS_OVERWRITE), FS_FILE_WRITEERROR);
        EXPECT_EQ(m_phone.Exists("f"), c.bFileStays) << c.sPrefix;
        m_phone.phone.Behave();
    }
    m_phone.AddFile("f", {1, 2, 3});
    m_phone.phone.WithFiles([](handset::FileSystem& files) { files.SetFreeBlocks(1); });
    EXPECT_EQ(Put(sLocal, "/f", FS_COPYFLAGS_OVERWRITE), FS_FILE_WRITEERROR);
    EXPECT_EQ(m_phone.Content("f"), (Bytes{1, 2, 3}));
}

TEST_F(FrontFiles, PhoneVanishesDuringATransfer) {
    m_phone.AddFile("f", Pattern(9000));
    m_phone.Misbehave(Action::Unplug, kRead, 1, 0, 2);
    EXPECT_EQ(Get("/f", m_local.Path("f"), FS_COPYFLAGS_MOVE), FS_FILE_WRITEERROR);
    EXPECT_EQ(m_local.Read("f").size(), 3072u);
    m_phone.phone.Replug();
    EXPECT_TRUE(m_phone.Exists("f"));
    EXPECT_EQ(Get("/f", m_local.Path("f"), FS_COPYFLAGS_OVERWRITE), FS_FILE_OK);
    EXPECT_EQ(m_local.Read("f"), Pattern(9000));
}

TEST_F(FrontFiles, FullLocalDiskFailsTheDownload) {
    m_phone.AddFile("f", Pattern(9000));
    EXPECT_EQ(Get("/f", "/dev/full", FS_COPYFLAGS_OVERWRITE | FS_COPYFLAGS_MOVE), FS_FILE_WRITEERROR);
    EXPECT_TRUE(m_phone.Exists("f"));
}

TEST_F(FrontFiles, Renaming) {
    m_phone.AddFile("a", {1});
    m_phone.AddFile("b", {2});
    const struct {
        const char* sOld;
        const char* sNew;
        BOOL bMove;
        BOOL bOverWrite;
        int iResult;
    } cases[] = {
        {"/a", "/b", 0, 1, FS_FILE_NOTSUPPORTED},
        {"/a", "/b", 0x286E8700, 1, FS_FILE_NOTSUPPORTED}, // hosts fill one byte
        {"/a", "/b", 1, 0, FS_FILE_EXISTS},
        {"/a", "/b", 1, 0x286E8700, FS_FILE_EXISTS},
        {"/missing", "\\c", 1, 0, FS_FILE_WRITEERROR},
        {"\\a", "\\b", 0x286E8701, 1, FS_FILE_OK},
        {"/b", "/c", 1, 0, FS_FILE_OK},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Move(c.sOld, c.sNew, c.bMove, c.bOverWrite), c.iResult) << c.sOld << c.bMove;
    EXPECT_EQ(NamesIn("/"), Lines{"c"});
    EXPECT_EQ(m_phone.Content("c"), Bytes{1});
    FsDisconnect(nullptr);
    EXPECT_EQ(Move("/c", "/d", 1, 0), FS_FILE_READERROR);
    EXPECT_EQ(Move("/c", "/d", 1, 1), FS_FILE_NOTSUPPORTED);
    EXPECT_EQ(front.ContextHandle, nullptr);
}

TEST_F(FrontFiles, FoldersAndDeletion) {
    m_phone.AddFile("d/f", {});
    const struct {
        BOOL(HOST_CALL* pfnAct)(char*);
        const char* sPath;
        BOOL bResult;
        const char* sThere;
        bool bThere;
    } cases[] = {
        {FsMkDir, "\\new", 1, "new", true},      {FsMkDir, "/new", kExistingFolderCountsAsMade, "new", true},
        {FsMkDir, "/d/f", 0, "d/f", true},       {FsMkDir, "/no/such", 0, "no", false},
        {FsRemoveDir, "/new", 1, "new", false},  {FsRemoveDir, "/d", 1, "d", true}, // a refusal does not show
        {FsDeleteFile, "/d/f", 1, "d/f", false},
    };
    for (const auto& c : cases) {
        std::string sPath = c.sPath;
        EXPECT_EQ(c.pfnAct(sPath.data()), c.bResult) << c.sPath;
        EXPECT_EQ(m_phone.Exists(c.sThere), c.bThere) << c.sPath;
    }
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
