// The mounted folder's operations on the phone, below libfuse: requests on the wire, errno values, caching,
// and open files when the handset is unplugged or idle.
#include <future>

#include "mount/link_targets.h"
#include "mount/works.h"
#include "program_fixture.h"

namespace {

using namespace tools::mount;

constexpr DWORD kRead = 0;
constexpr DWORD kReadWrite = 2;

class MountTest : public testing::Test {
protected:
    MountTest() {
        m_phone.AddFile("dir/file", Pattern(1536));
        m_phone.AddLink("dir/link", "file");
    }

    /// Returns the errno value with which `work` fails, 0 when it succeeds.
    template <class Work>
    int ErrnoOf(Work work) {
        try {
            work();
            return 0;
        } catch (const PosixError& error) {
            return error.number;
        }
    }
    template <class Work>
    void Finish(Work& work) {
        while (!work.Step()) {
        }
    }
    OpenFilePtr Open(const std::string& sPath, DWORD iAccess) {
        return m_folder.Open(sPath, iAccess, m_isUnchanged);
    }
    Bytes ReadAll(const OpenFilePtr& file, size_t iSize) {
        ReadWork work(Parts(), file, 0, iSize);
        Finish(work);
        return {work.Data().begin(), work.Data().end()};
    }
    int WriteErrno(const OpenFilePtr& file, uint64_t iOffset, const Bytes& data) {
        return ErrnoOf([&] {
            WriteWork work(Parts(), file, iOffset, data);
            Finish(work);
        });
    }
    int ResizeErrno(const std::string& sPath, uint64_t iLength) {
        return ErrnoOf([&] {
            ResizeWork work(Parts(), sPath, iLength);
            Finish(work);
        });
    }
    Phone Parts() { return {m_session, m_folder, *m_thread}; }
    /// Waits until all posted works are done.
    void Settle() {
        m_thread->Run([] { return true; }, [] { return false; });
    }
    size_t EntriesOf(const std::string& sFolder) {
        size_t iCount = 0;
        m_phone.phone.WithFiles([&](handset::FileSystem& files) { iCount = files.List(sFolder).size(); });
        return iCount;
    }

    PluggedPhone m_phone;
    PhoneSession m_session{1};
    PhoneFolder m_folder{m_session, "/mnt/phone"};
    std::unique_ptr<PhoneThread> m_thread =
        std::make_unique<PhoneThread>(std::chrono::hours(1), [this] { m_folder.Idle(); });
    bool m_isUnchanged = false;
};

TEST_F(MountTest, OneBlockIsReadWithFourRequests) {
    const OpenFilePtr file = Open("/dir/file", kRead);
    EXPECT_EQ(ReadAll(file, 4096), Pattern(1536));
    const std::string sPath = " 2F 64 69 72 2F 66 69 6C 65 00";
    EXPECT_EQ(m_phone.Requests(),
              (Lines{kReadLink + sPath, kStat + sPath, kOpenFile + " 00 00 00 00 00 00 00 00" + sPath,
                     "4B 13 04 00 00 00 00 00 00 06 00 00 00 00 00 00"}));
    m_folder.Files().Release(*file);
    EXPECT_EQ(m_phone.OpenCount(), 0u);
}

TEST_F(MountTest, ListingsAreCachedForAMoment) {
    ListWork work(Parts(), "/dir");
    Finish(work);
    ASSERT_EQ(work.Result()->entries.size(), 2u);
    m_phone.phone.ClearRequests();
    EXPECT_EQ(m_folder.Look("/dir/file").size, 1536u);
    EXPECT_TRUE(m_folder.Look("/dir/link").IsLink());
    EXPECT_EQ(ErrnoOf([&] { m_folder.Look("/dir/none"); }), ENOENT);
    EXPECT_TRUE(m_phone.Requests().empty());
    m_folder.MakeFolder("/dir/none", 0700); // the listing does not count for changed names
    EXPECT_TRUE(m_folder.Look("/dir/none").IsFolder());
    EXPECT_EQ(m_folder.Look("/dir/file").size, 1536u);
    EXPECT_EQ(m_phone.CountOf(kReadLink), 1);
    m_folder.Rename("/dir", "/other", true);
    EXPECT_EQ(ErrnoOf([&] { m_folder.Look("/dir/file"); }), ENOENT);
}

TEST_F(MountTest, ContradictoryEntries) {
    const auto entry = [](const std::string& sName, uint32_t iType, uint32_t iMode) {
        return Packet(kReadFolder, {5, 1, 0, iType, iMode, 7, 1, 2, 3}, sName + std::string(1, '\0'));
    };
    const Bytes entries[] = {
        entry("file", 0, S_IFREG | 0644), entry("odd", 3, 0644), entry("two", 0, S_IFDIR | 0755),
        entry("/slash", 1, 0755),         entry("..", 1, 0755),  entry("", 0, 0)};
    m_phone.Answer(kOpenFolder, Packet(kOpenFolder, {5, 0}));
    m_phone.Answer(kCloseFolder, Packet(kCloseFolder, {0}));
    m_phone.phone.Script(Hex(kReadFolder), [entries](const Bytes& request) -> std::vector<Bytes> {
        return {entries[std::min<size_t>(ValueAt(request, 8), std::size(entries)) - 1]};
    });
    ListWork work(Parts(), "/x");
    Finish(work);
    std::string sAll;
    for (const Entry& found : work.Result()->entries)
        sAll += found.name + (found.isSound ? "+ " : "- ");
    EXPECT_EQ(sAll, "file+ odd- two- slash+ ");
}

TEST_F(MountTest, ContentIsCachedWhileTheVersionIsTheSame) {
    const auto open = [&] { m_folder.Files().Release(*Open("/dir/file", kRead)); };
    open();
    EXPECT_FALSE(m_isUnchanged);
    open();
    EXPECT_TRUE(m_isUnchanged);
    EXPECT_EQ(WriteErrno(Open("/dir/file", kReadWrite), 0, {'x'}), 0);
    open();
    EXPECT_FALSE(m_isUnchanged); // although size and time may be the same

    AttributeCache cache;
    const Attributes versions[] = {{0644, 7, 1, 1, 2, 3},
                                   {0644, 8, 1, 1, 2, 3},
                                   {0644, 8, 1, 1, 3, 3},
                                   {0644, 8, 1, 1, 3, 4},
                                   {0600, 8, 1, 1, 3, 4}};
    for (Attributes version : versions) {
        EXPECT_FALSE(cache.OpenedVersion("/f", version));
        version.accessed = 99; // reading does not change the version
        EXPECT_TRUE(cache.OpenedVersion("/f", version));
    }
}

TEST_F(MountTest, RefusalsBecomeErrnoValues) {
    const std::pair<DWORD, int> rows[] = {{2, ENOENT},        {9, EIO},        {13, EACCES}, {17, EEXIST},
                                          {24, ENFILE},       {27, EFBIG},     {28, ENOSPC}, {30, EROFS},
                                          {36, ENAMETOOLONG}, {39, ENOTEMPTY}, {40, ELOOP},  {4711, EIO}};
    for (const auto& [iPhone, iHost] : rows) {
        m_phone.Misbehave(Action::Refuse, kUnlink, 1, iPhone);
        EXPECT_EQ(ErrnoOf([&] { m_folder.RemoveFile("/dir/file"); }), iHost) << iPhone;
    }
    EXPECT_EQ(ErrnoOf([&] { m_folder.RemoveFolder("/dir"); }), ENOTEMPTY);
    EXPECT_EQ(ErrnoOf([&] { m_folder.MakeFolder("/dir", 0777); }), EEXIST);
    EXPECT_EQ(ErrnoOf([&] { m_folder.Rename("/dir/link", "/dir/file", false); }), EEXIST);
    EXPECT_EQ(ErrnoOf([&] { m_folder.RemoveFile("/dir/" + std::string(216, 'n')); }), ENAMETOOLONG);
    EXPECT_EQ(ErrnoOf([&] { Open("/" + std::string(100, 'a') + "/" + std::string(143, 'b'), kRead); }),
              ENAMETOOLONG);
    EXPECT_EQ(WriteErrno(Open("/dir/file", kReadWrite), 0xFFFFFFFF, {'x'}), EFBIG);
}

TEST_F(MountTest, LinksLeadIntoTheMountPoint) {
    const std::tuple<const char*, const char*, const char*> shown[] = {
        {"/l", "a/b", "a/b"}, {"/l", "/a", "a"}, {"/d/e/l", "/a/b", "../../a/b"}, {"/l", "/", "."}};
    for (const auto& [sLink, sTarget, sShown] : shown)
        EXPECT_EQ(ShownTarget(sLink, sTarget), sShown) << sLink << sTarget;
    EXPECT_EQ(StoredTarget("../x", "/mnt/phone"), "../x");
    EXPECT_EQ(StoredTarget("/mnt/phone/x", "/mnt/phone"), "/x");
    for (const char* sElsewhere : {"/etc", "/mnt/phone2", "/"})
        EXPECT_EQ(ErrnoOf([&] { StoredTarget(sElsewhere, "/mnt/phone"); }), EPERM) << sElsewhere;
    EXPECT_EQ(m_folder.LinkTarget("/dir/link"), "file");
}

// --- Acknowledged writes --------------------------------------------------------------------------------

TEST_F(MountTest, LostWritesAreReported) {
    const OpenFilePtr file = Open("/dir/file", kReadWrite);
    m_phone.phone.WithFiles([](handset::FileSystem& files) { files.SetFreeBlocks(2); });
    WriteWork work(Parts(), file, 0, Pattern(4096));
    Finish(work);
    EXPECT_EQ(work.Done(), 1536u + 1024);
    EXPECT_EQ(m_phone.Content("dir/file"), Pattern(2560));
    EXPECT_EQ(WriteErrno(file, 2560, {'x'}), ENOSPC);
    m_phone.Misbehave(Action::Refuse, kCloseFile, 5, 5);
    EXPECT_EQ(ErrnoOf([&] { m_folder.Files().Settle(*file); }), EIO);
}

TEST_F(MountTest, Resizing) {
    for (const size_t iLength : {1536u, 3000u, 700u, 0u, 1u}) {
        const OpenFilePtr other = Open("/dir/file", kReadWrite);
        EXPECT_EQ(ResizeErrno("/dir/file", iLength), 0) << iLength;
        EXPECT_EQ(m_phone.Content("dir/file").size(), iLength);
        EXPECT_EQ(WriteErrno(other, 0, {'x'}), 0); // an open file follows the change
        EXPECT_EQ(m_phone.Content("dir/file")[0], 'x');
        Settle();
        m_folder.Files().Release(*other);
    }
    EXPECT_EQ(EntriesOf("dir"), 2u);
    EXPECT_EQ(m_phone.OpenCount(), 0u);
}

TEST_F(MountTest, FailedResizingLeavesTheFileUnchanged) {
    for (const std::string& sRequest : {kWrite, kCloseFile, std::string("4B 13 0E 00")}) {
        m_phone.Misbehave(Action::Refuse, sRequest, 5, 28);
        EXPECT_EQ(ResizeErrno("/dir/file", 700), ENOSPC) << sRequest;
        m_phone.phone.Behave();
        Settle();
        EXPECT_EQ(m_phone.Content("dir/file"), Pattern(1536));
        EXPECT_EQ(EntriesOf("dir"), 2u) << sRequest;
    }
    EXPECT_EQ(ResizeErrno("/dir/file", 0x100000000), EFBIG);
}

// --- Without the handset --------------------------------------------------------------------------------

TEST_F(MountTest, UnpluggedAndBack) {
    const OpenFilePtr file = Open("/dir/file", kReadWrite);
    EXPECT_EQ(WriteErrno(file, 0, {'x'}), 0);
    m_phone.phone.Unplug();
    EXPECT_EQ(ErrnoOf([&] { m_folder.MakeFolder("/new", 0777); }), EIO);
    EXPECT_EQ(ErrnoOf([&] { ReadAll(file, 100); }), EIO);
    m_phone.phone.Replug();
    EXPECT_TRUE(m_folder.Look("/dir").IsFolder());
    EXPECT_EQ(ErrnoOf([&] { ReadAll(file, 100); }), EIO); // its descriptor may belong to another file now
    EXPECT_EQ(ErrnoOf([&] { m_folder.Files().Settle(*file); }), EIO);
    EXPECT_EQ(ReadAll(Open("/dir/file", kRead), 1)[0], 'x');
    // Unplugged and back between two requests: the first one that may be repeated finds the handset again.
    m_phone.phone.Unplug();
    m_phone.phone.Replug();
    EXPECT_TRUE(m_folder.GetSpace().totalBlocks > 0);
}

TEST_F(MountTest, UnpluggedAtEveryRequestOfEveryOperation) {
    const Bytes kByte = {'x'};
    OpenFilePtr file;
    bool isWhole = false;
    const std::pair<const char*, std::function<void()>> operations[] = {
        {"attributes",
         [&] {
             m_folder.Changed("/dir/file"); // forgets what is known
             m_folder.Look("/dir/file");
         }},
        {"link", [&] { m_folder.LinkTarget("/dir/link"); }},
        {"space", [&] { m_folder.GetSpace(); }},
        {"open", [&] { Open("/dir/file", kRead); }},
        {"read", [&] { ReadAll(file, 1536); }},
        {"list",
         [&] {
             ListWork work(Parts(), "/dir");
             Finish(work);
         }},
        {"touch", [&] { m_folder.Touch("/dir/file"); }},
        {"write",
         [&] {
             WriteWork work(Parts(), file, 0, kByte);
             Finish(work);
         }},
        {"close",
         [&] {
             WriteWork work(Parts(), file, 0, kByte);
             Finish(work);
             m_folder.Files().Settle(*file);
         }},
        {"shorten",
         [&] {
             ResizeWork work(Parts(), "/dir/file", 1000);
             Finish(work);
         }},
        {"mode", [&] { m_folder.ChangeMode("/dir/file", 0600); }},
        {"rename", [&] { m_folder.Rename("/dir/file", "/dir/other", true); }},
        {"remove", [&] { m_folder.RemoveFile("/dir/other"); }},
        {"make a folder", [&] { m_folder.MakeFolder("/dir/folder", 0777); }},
        {"remove a folder", [&] { m_folder.RemoveFolder("/dir/folder"); }},
        {"make a link", [&] { m_folder.MakeLink("/dir/new", "file"); }},
        {"create", [&] { m_folder.Create("/dir/created", kReadWrite | 0x40, 0644); }},
    };
    for (const auto& [sWhat, operation] : operations) {
        int iUnplugged = 0;
        for (isWhole = false; !isWhole; ++iUnplugged) {
            EXPECT_EQ(ErrnoOf([&] { m_folder.Look("/dir"); }), 0) << sWhat << ", after " << iUnplugged;
            if (m_phone.Exists("dir/file")) {
                EXPECT_EQ(ErrnoOf([&] { file = Open("/dir/file", kReadWrite); }), 0) << sWhat << iUnplugged;
            }
            m_folder.Idle(); // so that nothing is known
            m_phone.Misbehave(Action::Unplug, "", 1, 0, iUnplugged);
            const int iErrno = ErrnoOf(operation);
            Settle();
            isWhole = !m_phone.phone.TtyPath().empty();
            EXPECT_EQ(iErrno, isWhole ? 0 : EIO) << sWhat << ", request " << iUnplugged;
            m_phone.phone.Behave();
            if (!isWhole)
                m_phone.phone.Replug();
        }
        EXPECT_GT(iUnplugged, 1) << sWhat;
    }
}

TEST_F(MountTest, IdlePortIsClosedAndFilesAreReopened) {
    const OpenFilePtr file = Open("/dir/file", kReadWrite);
    EXPECT_EQ(WriteErrno(file, 0, {'x'}), 0);
    m_folder.Idle();
    EXPECT_EQ(m_phone.OpenCount(), 0u);
    {
        Diag_FTM other(1);
        EXPECT_TRUE(other.OpenPort());
        EXPECT_EQ(ErrnoOf([&] { ReadAll(file, 1); }), EIO); // held by another program
    }
    EXPECT_EQ(ReadAll(file, 1)[0], 'x');
    m_folder.Idle();
    m_phone.AddFile("dir/file", Pattern(99)); // replaced meanwhile
    EXPECT_EQ(WriteErrno(file, 0, {'y'}), ESTALE);
    EXPECT_EQ(m_phone.Content("dir/file"), Pattern(99));
}

TEST_F(MountTest, WorksTakeTurnsAndCallersMayGiveUp) {
    std::string sSteps;
    const auto steps = [&](char cName, size_t iCount) {
        return [&sSteps, cName, iCount, i = size_t{0}]() mutable {
            sSteps += cName;
            return ++i == iCount;
        };
    };
    std::promise<void> done;
    m_thread->Post([&] {
        m_thread->Post(steps('a', 4));
        m_thread->Post(steps('b', 2));
        m_thread->Post([&, last = steps('c', 5)]() mutable {
            const bool isLast = last();
            if (isLast)
                done.set_value();
            return isLast;
        });
        return true;
    });
    done.get_future().wait();
    EXPECT_EQ(sSteps, "abcabcacacc");

    m_phone.Misbehave(Action::Ignore, kOpenFolder, -1);
    const auto begin = Clock::now();
    const auto work = std::make_shared<ListWork>(Parts(), "/dir");
    EXPECT_EQ(ErrnoOf([&] { m_thread->Run([work] { return work->Step(); }, [] { return true; }); }), EINTR);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5)); // not the five attempts
    m_phone.phone.Unplug();
    m_thread.reset();
}

#ifdef QUILLET_MOUNT // built where libfuse is

class MountProgramTest : public ProgramTest {
protected:
    MountProgramTest() : ProgramTest(QUILLET_MOUNT) {}
};

TEST_F(MountProgramTest, ReasonsNotToMount) {
    PluggedPhone phone;
    m_local.Write("file", {});
    std::filesystem::create_directory(m_local.Path("empty"));
    Expect({
        {"--help", 0, "usage: quillet-mount"},
        {"--version", 0, "quillet-mount "},
        {"", 2, "no folder; see quillet-mount --help"},
        {"--loud empty", 2, "--loud"},
        {"-o loud empty", 2, "loud"},
        {"--port 1x empty", 2, "--port"},
        {".", 1, "is not empty"},
        {"file", 1, "is not a folder"},
        {"missing", 1, "No such file"},
        {"empty file", 2, "see quillet-mount --help"},
        {"--port 9 empty", 3, "no handset (port COM9 is gone)"},
    });
    phone.Misbehave(Action::Ignore, "", -1);
    Expect({{"empty", 3, "no handset (none answers on any port)"},
            {"--port 1 empty", 3, "no handset (the handset on port COM1 does not answer)"}});
}

#endif

} // namespace
