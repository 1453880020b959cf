// Listing folders: what the host sees of the phone's entries, and what is requested from the phone.
#include <cerrno>
#include <cstring>

#include "host_fixture.h"

namespace {

uint64_t AsNumber(const FILETIME& time) {
    return static_cast<uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

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
    // Odd names, and dates.
    const std::tuple<std::string, uint32_t, uint64_t> files[] = {
        {"blank\t%s%n\"quoted\"\xC3\xA4\xFF\x80", 0x7FFFFFFF, k1970 + 0x7FFFFFFF * kSecond},
        {std::string(120, 'x'), 0x80000000, k1970},
    };
    for (const auto& [sName, iDate, iTime] : files) {
        m_phone.AddFile(sName, Pattern(300));
        m_phone.phone.WithFiles([&, sName = sName, iDate = iDate](handset::FileSystem& fs) {
            fs.SetTimes(sName, {1, 2, iDate});
        });
        WIN32_FIND_DATAA data;
        std::memset(&data, 0xEE, sizeof data); // every field must be overwritten
        const HANDLE hListing = FindFirst("/", data);
        EXPECT_EQ(data.cFileName, sName);
        EXPECT_EQ(data.nFileSizeLow, 300u);
        EXPECT_EQ(AsNumber(data.ftLastWriteTime), iTime) << sName;
        EXPECT_EQ(AsNumber(data.ftCreationTime), iTime) << sName;
        EXPECT_EQ(data.dwFileAttributes | data.nFileSizeHigh | data.dwReserved0 | data.dwReserved1, 0u);
        FsFindClose(hListing);
        m_phone.phone.WithFiles([](handset::FileSystem& fs) { fs.Clear(); });
    }
    m_phone.AddFolder("folder");
    m_phone.AddLink("link", "folder");
    EXPECT_EQ(List("/").at(0).iAttributes, FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(List("/").at(1).iAttributes, 0u);
}

TEST_F(FrontListing, PathsInRequests) {
    Connect();
    const std::pair<std::string, std::string> paths[] = {
        {"", "/"},
        {"//a///b////", "a/b/"},
        {"\\/\\a\\\\b", "a/b"},
        {"C:\\x", "C:\\x"},
        {"/ab:\\c", "ab:/c"},
        {"\\nvm\\s", "nvm/s"},
        {"/b\"%s%n\xFF", "b\"%s%n\xFF"},
    };
    for (const auto& [sHost, sPhone] : paths) {
        m_phone.phone.ClearRequests();
        List(sHost);
        EXPECT_GE(m_phone.CountOf(handset::ToHex(Packet(kOpenFolder, {}, sPhone + '\0'))), 1) << sHost;
    }
}

TEST_F(FrontListing, EmptyAndNotConnectedDiffer) {
    m_phone.AddFolder("empty");
    m_phone.AddFile("nvm/item", {});
    Connect();
    WIN32_FIND_DATAA data;
    for (const char* sPath : {"/empty", "/missing", "/nvm", "/nvm/"}) {
        errno = 0;
        EXPECT_EQ(FindFirst(sPath, data), kNoListing) << sPath;
        EXPECT_EQ(errno, ENODATA) << sPath;
    }
    m_phone.phone.Unplug();
    errno = 0;
    EXPECT_EQ(FindFirst("/", data), kNoListing);
    EXPECT_NE(errno, ENODATA);
}

TEST_F(FrontListing, NestedListingsContinue) {
    AddFiles("outer", 3);
    AddFiles("inner", 3);
    WIN32_FIND_DATAA data;
    const HANDLE hOuter = FindFirst("/outer", data);
    ASSERT_EQ(FsFindNext(hOuter, &data), 1);
    EXPECT_EQ(NamesIn("/inner"), (Lines{"f0", "f1", "f2"}));
    // The connection may close meanwhile: a listing is completely in memory.
    FsDisconnect(nullptr);
    ASSERT_EQ(FsFindNext(hOuter, &data), 1);
    EXPECT_STREQ(data.cFileName, "f2");
    EXPECT_EQ(FsFindNext(hOuter, &data), 0);
    FsFindClose(hOuter);
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
    // The first one was dropped, so its handle now continues the last listing, which is at its end.
    EXPECT_EQ(FsFindNext(handles[0], &data), 0);
}

TEST_F(FrontListing, TenThousandEntries) {
    AddFiles("d", 10000);
    m_phone.AddFile("d/f4711", Pattern(4711));
    const std::vector<HostEntry> entries = List("/d");
    ASSERT_EQ(entries.size(), 10000u);
    for (const size_t i : {0, 4711, 9999}) {
        EXPECT_EQ(entries[i].sName, "f" + std::to_string(i));
        EXPECT_EQ(entries[i].iSize, i == 4711 ? 4711u : 0u);
    }
}

} // namespace
