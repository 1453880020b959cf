// Listing folders: what the host sees of the phone's entries, and what the phone is asked.
#include <cerrno>
#include <cstring>

#include "host_fixture.h"

namespace {

class FrontListing : public HostTest {
protected:
    void AddFiles(const std::string& sFolder, int iCount) {
        for (int i = 0; i < iCount; ++i)
            m_phone.AddFile(sFolder + "/f" + std::to_string(i), {});
    }
};

TEST_F(FrontListing, RecordsOfEntries) {
    constexpr uint64_t k1970 = 116444736000000000;
    constexpr uint64_t kSecond = 10000000;
    // Dates, and the names of which each is as odd as the phone lets it be.
    const std::tuple<std::string, uint32_t, uint64_t> files[] = {
        {"with blank\t\"quoted\"", 0, k1970},
        {"%s%n%d", 951782400, k1970 + 951782400 * kSecond},
        {"\xC3\xA4\xFF\x80", 0x7FFFFFFF, k1970 + 0x7FFFFFFF * kSecond},
        {"a\\b", 0x80000000, k1970},
        {std::string(120, 'x'), 0xFFFFFFFF, k1970},
    };
    for (const auto& [sName, iDate, iTime] : files) {
        m_phone.AddFile(sName, Pattern(300));
        m_phone.phone.WithFiles([&, sName = sName, iDate = iDate](handset::FileSystem& fs) {
            fs.SetTimes(sName, {1, 2, iDate});
        });
    }
    const std::vector<HostEntry> entries = List("/");
    ASSERT_EQ(entries.size(), std::size(files));
    for (size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(std::tuple(entries[i].sName, entries[i].iSize, entries[i].iAttributes),
                  std::tuple(std::get<0>(files[i]), 300u, 0u));
        EXPECT_EQ(entries[i].iTime, std::get<2>(files[i])) << entries[i].sName;
    }
}

TEST_F(FrontListing, WholeRecordIsWritten) {
    m_phone.AddFolder("folder/inside");
    m_phone.AddLink("link", "folder");
    WIN32_FIND_DATAA data;
    std::memset(&data, 0xEE, sizeof data);
    const HANDLE hListing = FindFirst("/", data);
    ASSERT_NE(hListing, kNoListing);
    EXPECT_STREQ(data.cFileName, "folder");
    EXPECT_EQ(data.dwFileAttributes, FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(data.nFileSizeHigh, 0u);
    EXPECT_EQ(data.dwReserved0 | data.dwReserved1, 0u);
    EXPECT_STREQ(data.cAlternateFileName, "");
    EXPECT_NE(AsNumber(data.ftCreationTime), 0u);
    EXPECT_EQ(AsNumber(data.ftCreationTime), AsNumber(data.ftLastAccessTime));
    ASSERT_EQ(FsFindNext(hListing, &data), 1);
    EXPECT_STREQ(data.cFileName, "link");
    EXPECT_EQ(data.dwFileAttributes, 0u);
    FsFindClose(hListing);
}

TEST_F(FrontListing, PathsThatThePhoneIsAsked) {
    Connect();
    for (const char* sRow :
         {"\\ > /", "/ > /", " > /", "\\brew > brew", "/brew/ > brew/", "\\a\\\\b > a/b",
          "//a///b//// > a/b/", "\\/\\a > a", "C:\\x > C:\\x", "\\C:\\x > C:\\x", "/a:b > a:b",
          "/ab:\\c > ab:/c", "a: > a:", "/nvm/ > nvm/", "\\nvm\\sub > nvm/sub", "/NVM > NVM",
          "/a b\"%s%n > a b\"%s%n", "/\xC3\xA4\xFF > \xC3\xA4\xFF"}) {
        const auto [sHost, sPhone] = Sides(sRow);
        m_phone.phone.ClearRequests();
        List(sHost);
        EXPECT_GE(m_phone.CountOf(handset::ToHex(Packet(kOpenFolder, {}, sPhone + '\0'))), 1)
            << sRow << ": " << ::testing::PrintToString(m_phone.Requests());
    }
}

TEST_F(FrontListing, EmptyAndNotConnectedDiffer) {
    m_phone.AddFolder("empty");
    m_phone.AddFile("nvm/item", {});
    Connect();
    WIN32_FIND_DATAA data;
    for (const char* sPath : {"/empty", "/missing", "/nvm", "\\nvm"}) {
        errno = 0;
        EXPECT_EQ(FindFirst(sPath, data), kNoListing) << sPath;
        EXPECT_EQ(errno, ENODATA) << sPath;
    }
    EXPECT_EQ(NamesIn("/nvm/"), Lines{"item"});
    m_phone.phone.Unplug();
    errno = 0;
    EXPECT_EQ(FindFirst("/", data), kNoListing);
    EXPECT_NE(errno, ENODATA);
    EXPECT_EQ(FsFindNext(kNoListing, &data), 0);
}

TEST_F(FrontListing, FailedEnumerationIsNotAShortListing) {
    AddFiles("d", 5);
    Connect();
    m_phone.Misbehave(Action::Refuse, kReadFolder, -1, 5, 3);
    EXPECT_EQ(NamesIn("/d"), Lines{});
    m_phone.phone.Behave();
    EXPECT_EQ(NamesIn("/d").size(), 5u);
    EXPECT_EQ(m_phone.OpenCount(), 0u);
}

TEST_F(FrontListing, NestedListingsWalkOn) {
    AddFiles("outer", 4);
    AddFiles("inner", 3);
    WIN32_FIND_DATAA data;
    const HANDLE hOuter = FindFirst("/outer", data);
    ASSERT_EQ(FsFindNext(hOuter, &data), 1);
    EXPECT_EQ(NamesIn("/inner"), (Lines{"f0", "f1", "f2"}));
    ASSERT_EQ(FsFindNext(hOuter, &data), 1);
    EXPECT_STREQ(data.cFileName, "f2");
    const HANDLE hInner = FindFirst("/inner", data);
    EXPECT_NE(hInner, hOuter);
    // The connection may go meanwhile: a listing is whole in memory.
    FsDisconnect(nullptr);
    ASSERT_EQ(FsFindNext(hOuter, &data), 1);
    EXPECT_STREQ(data.cFileName, "f3");
    EXPECT_EQ(FsFindNext(hOuter, &data), 0);
    FsFindClose(hOuter);
    FsFindClose(hInner);
    // Handles that are not known walk the last listing.
    for (const char* sExpected : {"f1", "f2"}) {
        ASSERT_EQ(FsFindNext(hInner, &data), 1);
        EXPECT_STREQ(data.cFileName, sExpected);
    }
    EXPECT_EQ(FsFindNext(nullptr, &data), 0);
    EXPECT_EQ(FsFindClose(nullptr), 0);
}

TEST_F(FrontListing, ListingsThatAreNeverClosedAreBounded) {
    AddFiles("d", 2);
    Connect();
    WIN32_FIND_DATAA data;
    std::vector<HANDLE> handles;
    for (int i = 0; i < 257; ++i)
        handles.push_back(FindFirst("/d", data));
    EXPECT_EQ(FsFindNext(handles[1], &data), 1);
    EXPECT_EQ(FsFindNext(handles[1], &data), 0);
    EXPECT_EQ(FsFindNext(handles[256], &data), 1);
    // The first one was dropped, so its handle now walks the last listing, which is at its end.
    EXPECT_EQ(FsFindNext(handles[0], &data), 0);
}

TEST_F(FrontListing, UnusableArgumentsSendNothing) {
    m_phone.AddFile("a", {});
    Connect();
    m_phone.phone.ClearRequests();
    WIN32_FIND_DATAA data;
    EXPECT_EQ(FsFindFirst(nullptr, &data), kNoListing);
    EXPECT_EQ(FindFirst("/" + std::string(1023, 'a'), data), kNoListing);
    EXPECT_EQ(FindFirst(std::string(100000, '/'), data), kNoListing);
    char sRoot[] = "/";
    EXPECT_EQ(FsFindFirst(sRoot, nullptr), kNoListing);
    EXPECT_EQ(FsFindNext(nullptr, nullptr), 0);
    EXPECT_TRUE(m_phone.Requests().empty());
    FindFirst("/" + std::string(1022, 'a'), data);
    EXPECT_FALSE(m_phone.Requests().empty());
}

} // namespace
