// File transfers: the bytes on both sides, the requests, the callbacks, and that an incomplete transfer
// fails.
#include <functional>
#include <sstream>

#include "phone_fixture.h"

namespace {

class Efs2TransferTest : public PhoneTest {
protected:
    Efs2TransferTest() { m_diag.ConfigureEfsCallbacks(this, &Efs2TransferTest::Receive, nullptr); }

    bool Download(const std::string& sLocal, const std::string& sPhone) {
        m_progress.clear();
        return m_diag.EFS2_DIAG_READ_FILE(sLocal.c_str(), sPhone.c_str());
    }
    bool Upload(const std::string& sLocal, const std::string& sPhone) {
        m_progress.clear();
        return m_diag.EFS2_DIAG_WRITE_FILE(sLocal.c_str(), sPhone.c_str());
    }

    static unsigned char Receive(char* const sFirst, char* const sSecond, int iOperation, int iSubCode,
                                 DWORD iDone, DWORD iInAll, void* pUserData) {
        std::ostringstream text;
        text << (sFirst ? sFirst : "null") << ' ' << (sSecond ? sSecond : "null") << ' ' << iOperation << ' '
             << iSubCode << ' ' << iDone << ' ' << iInAll;
        auto* pTest = static_cast<Efs2TransferTest*>(pUserData);
        pTest->m_progress.push_back(text.str());
        if (pTest->m_onBlock)
            pTest->m_onBlock();
        return 0;
    }

    /// Replaces the responses to `iTimes` requests with that prefix, after the first `iSkip` ones.
    void Replace(const std::string& sPrefix, const Bytes& packet, int iSkip = 0, int iTimes = 1) {
        m_phone.phone.Misbehave({Action::Replace, Hex(sPrefix), iSkip, iTimes, 0, {packet}});
    }
    void SetFreeBlocks(uint32_t iBlocks) {
        m_phone.phone.WithFiles([=](handset::FileSystem& files) { files.SetFreeBlocks(iBlocks); });
    }

    Lines m_progress;
    std::function<void()> m_onBlock; // called with every block
    LocalFolder m_local;
};

TEST_F(Efs2TransferTest, FilesOfAnySizeArriveCompletely) {
    for (const size_t iSize : {0, 1, 511, 512, 513, 1024, 1535, 1536, 1537, 3072, 50000}) {
        const Bytes content = Pattern(iSize);
        EXPECT_TRUE(Upload(m_local.Write("source", content), "up")) << iSize;
        EXPECT_EQ(m_progress.size(), (iSize + 511) / 512);
        EXPECT_EQ(m_phone.Content("up"), content);
        EXPECT_TRUE(Download(m_local.Path("target"), "up")) << iSize;
        EXPECT_EQ(m_progress.size(), iSize / 1536 + 1);
        EXPECT_EQ(m_local.Read("target"), content);
        EXPECT_TRUE(m_diag.EFS2_DIAG_WRITE_FILE_MEM(reinterpret_cast<const char*>(content.data()),
                                                    static_cast<DWORD>(iSize), "memory"));
        EXPECT_EQ(m_phone.Content("memory"), content);
    }
    EXPECT_EQ(m_phone.OpenCount(), 0u);
    EXPECT_TRUE(m_log.Of(LOG_ERR).empty());
}

TEST_F(Efs2TransferTest, DownloadOnTheWire) {
    m_phone.AddFile("/x", Pattern(3072));
    const std::string sTarget = m_local.Path("x");
    EXPECT_TRUE(Download(sTarget, "/x"));
    EXPECT_EQ(m_phone.Requests(),
              (Lines{"4B 13 02 00 00 00 00 00 24 01 00 00 2F 78 00",
                     "4B 13 04 00 00 00 00 00 00 06 00 00 00 00 00 00",
                     "4B 13 04 00 00 00 00 00 00 06 00 00 00 06 00 00",
                     "4B 13 04 00 00 00 00 00 00 06 00 00 00 0C 00 00", "4B 13 03 00 00 00 00 00"}));
    const std::string sNames = sTarget + " " + sTarget + " 4 0 ";
    EXPECT_EQ(m_progress, (Lines{sNames + "1536 1536", sNames + "3072 3072", sNames + "3072 3072"}));
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_EfsRead( sLocalFile = " + sTarget + ", sEFS_File = /x)"));
    EXPECT_EQ(m_log.Of(LOG_RET).back(), "QLIB_EfsRead() - PASS");
}

TEST_F(Efs2TransferTest, UploadOnTheWire) {
    const std::string sSource = m_local.Write("source", Pattern(1000));
    EXPECT_TRUE(Upload(sSource, "/x"));
    const auto block = [](uint32_t iOffset, size_t iFrom, size_t iTo) {
        const Bytes all = Pattern(1000);
        return Packet(kWrite, {0, iOffset}, std::string(all.begin() + iFrom, all.begin() + iTo));
    };
    EXPECT_EQ(m_phone.phone.Requests(),
              (std::vector<Bytes>{Hex("4B 13 13 00 00"), Hex("4B 13 02 00 41 02 00 00 B6 01 00 00 2F 78 00"),
                                  block(0, 0, 512), block(512, 512, 1000), Hex("4B 13 03 00 00 00 00 00")}));
    EXPECT_EQ(m_progress, (Lines{sSource + " /x 5 0 512 1000", sSource + " /x 5 0 1000 1000"}));
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_EfsWrite( sLocalFile = " + sSource + ", sEFS_File = /x)"));
}

TEST_F(Efs2TransferTest, EmptyLocalPathUsesThePhonesFileName) {
    m_phone.AddFile("brew/mod/a.txt", Pattern(10));
    const std::string sBefore = std::filesystem::current_path();
    std::filesystem::current_path(m_local.Path());
    EXPECT_TRUE(Download("", "brew/mod/a.txt"));
    std::filesystem::current_path(sBefore);
    EXPECT_EQ(m_progress, Lines{"a.txt  4 0 10 10"});
    EXPECT_EQ(m_local.Read("a.txt"), Pattern(10));
}

// --- Downloads that fail --------------------------------------------------------------------------------

TEST_F(Efs2TransferTest, UnusableReadResponsesFailTheDownload) {
    m_phone.AddFile("x", Pattern(5000));
    const std::string sBlock(1536, 'b');
    const Bytes cases[] = {
        Packet(kRead, {0, 0, 1536, 5}, sBlock),           // refused
        Packet(kRead, {0, 0, 1536, 0}, sBlock.substr(1)), // shorter than its size field
        Packet(kRead, {0, 0, 1537, 0}, sBlock + "b"),     // more than was requested
        Packet(kRead, {0, 0, 1536}),                      // without the error number
    };
    for (const Bytes& packet : cases) {
        m_phone.phone.ClearRequests();
        Replace(kRead, packet, 1);
        EXPECT_FALSE(Download(m_local.Path("x"), "x")) << handset::ToHex(packet).substr(0, 60);
        EXPECT_EQ(m_phone.CountOf(kRead), 2);
        EXPECT_EQ(m_progress.size(), 1u);
        EXPECT_EQ(m_local.Read("x"), Pattern(1536));
        EXPECT_EQ(m_log.Lines().back(), "0x0004 QLIB_EfsRead() - FAIL");
        EXPECT_EQ(m_phone.OpenCount(), 0u);
    }
}

TEST_F(Efs2TransferTest, ShortReadEndsTheFileAndExtraBytesAreIgnored) {
    m_phone.AddFile("x", Pattern(5000));
    Replace(kRead, Packet(kRead, {0, 0, 3, 0}, "abcdef"));
    EXPECT_TRUE(Download(m_local.Path("x"), "x"));
    EXPECT_EQ(m_local.Read("x"), (Bytes{'a', 'b', 'c'}));
}

TEST_F(Efs2TransferTest, DownloadsThatCannotStart) {
    m_phone.AddFile("x", Pattern(10));
    EXPECT_FALSE(Download(m_local.Path("y"), "missing"));
    EXPECT_EQ(m_phone.CountOf(kOpenFile), 5);
    EXPECT_FALSE(m_local.Has("y"));
    EXPECT_FALSE(Download(m_local.Path("no/such/folder"), "x"));
    EXPECT_EQ(m_phone.CountOf(kRead), 0);
    EXPECT_EQ(m_phone.OpenCount(), 0u);
    EXPECT_FALSE(Download(m_local.Path("y"), std::string(244, 'p')));
}

TEST_F(Efs2TransferTest, FullLocalDiskAndLostPhoneFailTheDownload) {
    for (const size_t iSize : {100, 50000}) {
        m_phone.AddFile("x", Pattern(iSize));
        EXPECT_FALSE(Download("/dev/full", "x")) << iSize;
        EXPECT_EQ(m_log.Of(LOG_ERR).back(), "QLIB_EfsRead() - Local file cannot be written: /dev/full");
    }
    EXPECT_EQ(m_phone.OpenCount(), 0u);
    m_phone.Misbehave(Action::Unplug, kRead, 1, 0, 10);
    EXPECT_FALSE(Download(m_local.Path("x"), "x"));
    EXPECT_EQ(m_local.Read("x"), Pattern(15360));
}

// --- Uploads that fail ----------------------------------------------------------------------------------

TEST_F(Efs2TransferTest, UploadsThatCannotStartLeaveThePhonesFileUnchanged) {
    m_phone.AddFile("x", Pattern(10));
    const std::string sSource = m_local.Write("source", Pattern(1000));
    const auto fails = [this](const std::string& sLocal, const std::string& sPhone = "x") {
        EXPECT_FALSE(Upload(sLocal, sPhone));
        EXPECT_FALSE(m_diag.EFS2_LastWriteOpenedTarget());
    };
    fails(m_local.Path("missing"));
    SetFreeBlocks(1);
    fails(sSource);
    SetFreeBlocks(100);
    m_phone.Misbehave(Action::Cut, kStatFs, 1, 24);
    fails(sSource);
    fails(sSource, std::string(244, 'p'));
    m_phone.Misbehave(Action::Refuse, kOpenFile, 5, 13);
    fails(sSource);
    EXPECT_EQ(m_phone.CountOf(kOpenFile), 5);
    EXPECT_EQ(m_phone.Content("x"), Pattern(10));
}

TEST_F(Efs2TransferTest, UnusableWriteResponsesAreRetriedFiveTimes) {
    const std::string sSource = m_local.Write("source", Pattern(1000));
    const Bytes cases[] = {
        Packet(kWrite, {0, 0, 512, 28}), // refused
        Packet(kWrite, {0, 0, 0, 0}),    // acknowledges nothing
        Packet(kWrite, {0, 0, 513, 0}),  // more than was sent
        Packet(kWrite, {0, 0, 512}),     // without the error number
    };
    for (const Bytes& packet : cases)
        for (const int iTimes : {4, 5}) {
            m_phone.phone.ClearRequests();
            Replace(kWrite, packet, 0, iTimes);
            EXPECT_EQ(Upload(sSource, "x"), iTimes < 5) << handset::ToHex(packet);
            EXPECT_EQ(m_phone.CountOf(kWrite), iTimes < 5 ? 6 : 5);
            EXPECT_EQ(m_phone.Content("x"), iTimes < 5 ? Pattern(1000) : Bytes{});
            EXPECT_TRUE(m_diag.EFS2_LastWriteOpenedTarget());
            EXPECT_EQ(m_phone.OpenCount(), 0u);
        }
}

TEST_F(Efs2TransferTest, RestOfAPartlyWrittenBlockIsSentAgain) {
    m_phone.phone.Script(Hex(kWrite), [this](const Bytes& request) -> std::vector<Bytes> {
        const Bytes taken(request.begin() + 12, request.begin() + std::min<long>(212, std::ssize(request)));
        uint32_t iWritten = 0;
        m_phone.phone.WithFiles([&](handset::FileSystem& files) {
            files.Write(static_cast<int32_t>(ValueAt(request, 4)), ValueAt(request, 8), taken, iWritten);
        });
        return {Packet(kWrite, {0, 0, iWritten, 0})};
    });
    EXPECT_TRUE(Upload(m_local.Write("source", Pattern(1300)), "x"));
    EXPECT_EQ(m_phone.Content("x"), Pattern(1300));
    EXPECT_EQ(m_phone.CountOf(kWrite), 3 + 3 + 2);
    EXPECT_EQ(m_progress.size(), 3u);
}

TEST_F(Efs2TransferTest, FullPhoneFailsTheUpload) {
    const std::string sSource = m_local.Write("source", Pattern(20000));
    m_onBlock = [this] {
        SetFreeBlocks(3);
        m_onBlock = nullptr;
    };
    EXPECT_FALSE(Upload(sSource, "x"));
    EXPECT_TRUE(m_diag.EFS2_LastWriteOpenedTarget());
}

TEST_F(Efs2TransferTest, SourceThatShrinks) {
    const std::string sSource = m_local.Write("source", Pattern(100000));
    m_onBlock = [&] { std::filesystem::resize_file(sSource, 50000); };
    EXPECT_FALSE(Upload(sSource, "x"));
    EXPECT_EQ(m_log.Of(LOG_ERR).back(), "QLIB_EfsWrite() - Local file ended early: " + sSource);
}

TEST_F(Efs2TransferTest, RefusedCloseFailsBothDirections) {
    m_phone.AddFile("x", Pattern(10));
    m_phone.Misbehave(Action::Refuse, kCloseFile, 10, 5);
    EXPECT_FALSE(Download(m_local.Path("x"), "x"));
    EXPECT_FALSE(Upload(m_local.Path("x"), "y"));
    EXPECT_EQ(m_phone.CountOf(kCloseFile), 10);
}

// --- Abort ----------------------------------------------------------------------------------------------

TEST_F(Efs2TransferTest, AbortRemovesThePartialCopy) {
    m_phone.AddFile("x", Pattern(50000));
    const std::string sSource = m_local.Write("source", Pattern(50000));
    m_onBlock = [this] { m_diag.EFS2_DIAG_ABORT(); };
    EXPECT_TRUE(Download(m_local.Path("target"), "x"));
    EXPECT_FALSE(m_local.Has("target"));
    EXPECT_EQ(m_phone.CountOf(kRead), 1);
    EXPECT_TRUE(Upload(sSource, "up"));
    EXPECT_EQ(m_phone.CountOf(kWrite), 1);
    EXPECT_EQ(m_phone.Requests().back(), "4B 13 08 00 75 70 00");
    EXPECT_FALSE(m_phone.Exists("up"));
    EXPECT_EQ(m_phone.OpenCount(), 0u);
}

} // namespace
