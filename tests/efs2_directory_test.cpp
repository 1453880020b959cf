// Listing a directory: the traffic, the callbacks, and that an incomplete listing fails.
#include <sstream>

#include "phone_fixture.h"

namespace {

constexpr size_t kNameOffset = 40;

/// Returns the response for one entry.
Bytes Entry(const std::string& sName, uint32_t iType = 0, uint32_t iSize = 7, uint32_t iErrnum = 0,
            uint32_t iDirectory = 5) {
    return Packet(kReadFolder, {iDirectory, 99, iErrnum, iType, 0777, iSize, 1, 2, 0x30},
                  sName + std::string(1, '\0'));
}

class Efs2DirectoryTest : public PhoneTest {
protected:
    Efs2DirectoryTest() { m_diag.ConfigureEfsCallbacks(this, nullptr, &Efs2DirectoryTest::Receive); }

    /// Lists a directory. Returns the result, then "path kind date size" for every entry passed to the
    /// callback.
    Lines List(const char* sPath) {
        m_entries = {""};
        m_entries[0] = m_diag.EFS2_DIAG_ENUM_DIR(sPath) ? "true" : "false";
        return m_entries;
    }

    /// Scripts a directory: opening and closing succeed, and reading returns `entries`, then the end.
    void ScriptEntries(const std::vector<Bytes>& entries) {
        m_phone.Answer(kOpenFolder, Packet(kOpenFolder, {5, 0}));
        m_phone.Answer(kCloseFolder, Packet(kCloseFolder, {0}));
        m_phone.phone.Script(Hex(kReadFolder), [entries](const Bytes& request) -> std::vector<Bytes> {
            const size_t iNumber = ValueAt(request, 8);
            return {iNumber <= entries.size() ? entries[iNumber - 1] : Entry("")};
        });
    }

    static unsigned char Receive(char* const sName, unsigned char isFile, unsigned short Mask,
                                 unsigned char BufOption, unsigned char Clean, DWORD Date, DWORD FileSize,
                                 void* pUserData) {
        EXPECT_EQ(Mask + BufOption + Clean, 0);
        std::ostringstream text;
        text << sName << ' ' << +isFile << ' ' << std::hex << Date << ' ' << FileSize;
        static_cast<Efs2DirectoryTest*>(pUserData)->m_entries.push_back(text.str());
        return 0;
    }

    Lines m_entries;
};

TEST_F(Efs2DirectoryTest, WireCallbacksAndLog) {
    ScriptEntries({Entry("a.txt"), Entry("sub", 1, 0), Entry("/link", 2), Entry("odd", 3)});
    EXPECT_EQ(List("dir"),
              (Lines{"true", "dir/a.txt 1 30 7", "dir/sub 0 30 0", "dir/link 2 30 7", "dir/odd 0 30 7"}));
    EXPECT_EQ(m_phone.Requests(),
              (Lines{"4B 13 0B 00 64 69 72 00", "4B 13 0C 00 05 00 00 00 01 00 00 00",
                     "4B 13 0C 00 05 00 00 00 02 00 00 00", "4B 13 0C 00 05 00 00 00 03 00 00 00",
                     "4B 13 0C 00 05 00 00 00 04 00 00 00", "4B 13 0C 00 05 00 00 00 05 00 00 00",
                     "4B 13 0D 00 05 00 00 00"}));
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_EfsDirectory( sFolderPath = dir )"));

    m_phone.phone.ClearRequests();
    EXPECT_EQ(List("")[1], "/a.txt 1 30 7");
    EXPECT_EQ(m_phone.Requests()[0], "4B 13 0B 00 2F 00");
}

TEST_F(Efs2DirectoryTest, CallbackMayRemoveItself) {
    static int s_iCalls;
    s_iCalls = 0;
    m_diag.ConfigureEfsCallbacks(&m_diag, nullptr,
                                 [](char* const, unsigned char, unsigned short, unsigned char, unsigned char,
                                    DWORD, DWORD, void* pDiag) -> unsigned char {
                                     ++s_iCalls;
                                     static_cast<Diag_FTM*>(pDiag)->ConfigureEfsCallbacks(nullptr, nullptr,
                                                                                          nullptr);
                                     return 0;
                                 });
    ScriptEntries({Entry("a"), Entry("b")});
    EXPECT_EQ(List("dir")[0], "true");
    EXPECT_EQ(s_iCalls, 1);
}

TEST_F(Efs2DirectoryTest, SimulatedFileSystem) {
    m_phone.phone.WithFiles([](handset::FileSystem& files) {
        for (int i = 0; i < 300; ++i)
            files.AddFile("many/file " + std::to_string(i), "x");
        files.SetOpenLimit(1);
    });
    EXPECT_EQ(List("many").size(), 301u);
    EXPECT_EQ(List("nowhere"), Lines{"false"});
    EXPECT_EQ(m_phone.CountOf("4B 13 0B 00 6E"), 5);
    EXPECT_EQ(m_phone.OpenCount(), 0u);
}

TEST_F(Efs2DirectoryTest, EntriesWithTooLongPathsAreSkippedAndLogged) {
    const std::string sFits(127, 'n'), sTooLong(128, 'm'), sLongestWhole(215, 'o'), sCut(216, 'q');
    ScriptEntries({Entry(sTooLong), Entry(sFits), Entry(sLongestWhole), Entry(sCut), Entry("last")});
    EXPECT_EQ(List("dir"), (Lines{"true", "dir/" + sFits + " 1 30 7", "dir/last 1 30 7"}));
    EXPECT_EQ(m_log.Of(LOG_ERR).at(0),
              "QLIB_EfsDirectory() - Path too long, entry left out: dir/" + sTooLong);
    EXPECT_EQ(m_log.Of(LOG_ERR).size(), 3u);
    // A name that the response cuts off is not listed under its beginning, even if that fits.
    ScriptEntries({Entry(sCut)});
    EXPECT_EQ(List(""), Lines{"true"});
}

TEST_F(Efs2DirectoryTest, UnusableEntryResponsesFailTheListing) {
    Bytes withoutName = Entry("name");
    withoutName.resize(kNameOffset);
    Bytes withoutEnd = Entry("name");
    withoutEnd.pop_back();
    for (const Bytes& packet : {Entry("x", 0, 7, 2), Entry("x", 0, 7, 0, 0), withoutName, withoutEnd}) {
        m_phone.phone.ClearRequests();
        ScriptEntries({Entry("good"), packet});
        EXPECT_EQ(List("dir"), Lines{"false"}) << handset::ToHex(packet);
        EXPECT_EQ(m_phone.CountOf("4B 13 0C 00 05 00 00 00 02"), 5);
        EXPECT_EQ(m_phone.CountOf(kCloseFolder), 1);
    }
}

TEST_F(Efs2DirectoryTest, RefusedAndLostRequestsAreRepeated) {
    m_phone.AddFile("dir/a", {});
    m_phone.Misbehave(Action::Drop, kReadFolder);
    EXPECT_EQ(List("dir").size(), 2u);
    EXPECT_EQ(m_phone.CountOf(kReadFolder), 3);
    for (const std::string& sRequest : {kOpenFolder, kReadFolder, kCloseFolder}) {
        m_phone.Misbehave(Action::Refuse, sRequest, 4, 16);
        EXPECT_EQ(List("dir").size(), 2u) << sRequest;
    }
    m_phone.Misbehave(Action::Unplug, kReadFolder, 1, 0, 1);
    EXPECT_EQ(List("dir"), Lines{"false"});
}

} // namespace
