// The line in the host's log that says why an operation failed, for each operation and cause.
#include <fcntl.h>
#include <sys/file.h>

#include "host_fixture.h"
#include "platform/posix/test_faults.h"

namespace {

using Interfaces = std::vector<handset::UsbInterface>;

class FrontReasons : public HostTest {
protected:
    FrontReasons() {
        m_phone.AddFile("d/f", Pattern(5000));
        m_local.Write("f", Pattern(900));
        Connect();
    }

    /// Returns the failure lines of the host's log since the last call, without their type.
    std::string Failures() {
        std::string sLines;
        for (const std::string& sLine : m_host.TakeLog())
            if (sLine.starts_with("6 "))
                sLines += sLine.substr(2) + "\n";
        return sLines;
    }
    int GetFile(int iFlags = FS_COPYFLAGS_OVERWRITE) { return Get("/d/f", m_local.Path("g"), iFlags); }
    int PutFile(int iFlags) { return Put(m_local.Path("f"), "/d/f", iFlags); }
    static int Type(const std::string& sCommand) { return Execute("/d/", "quote " + sCommand).first; }
    static int Act(BOOL(HOST_CALL* pfnAct)(char*), std::string sPath) { return pfnAct(sPath.data()); }

    LocalFolder m_local;
};

TEST_F(FrontReasons, Refusals) {
    const std::string sRename = "4B 13 0E 00", sRemoveFolder = "4B 13 0A 00", sMakeFolder = "4B 13 09 00";
    const int iOver = FS_COPYFLAGS_OVERWRITE;
    // The request that is refused and the phone's error number, the call, its result, and the beginning of
    // its line.
    const std::tuple<std::string, uint32_t, std::function<int()>, int, std::string> rows[] = {
        {kOpenFolder, 13, [] { return static_cast<int>(List("/d").size()); }, 0, "list: /d"},
        {kReadFolder, 20, [] { return static_cast<int>(List("/d/").size()); }, 0, "list: /d/"},
        {kOpenFile, 13, [&] { return GetFile(); }, FS_FILE_WRITEERROR, "copy from the phone: /d/f"},
        {kRead, 21, [&] { return GetFile(iOver | 4); }, FS_FILE_WRITEERROR, "move from the phone: /d/f"},
        {kStat, 13, [&] { return PutFile(0); }, FS_FILE_NOTFOUND, "copy to the phone: /d/f"},
        {kOpenFile, 16, [&] { return PutFile(iOver); }, FS_FILE_WRITEERROR, "copy to the phone: /d/f"},
        {kWrite, 28, [&] { return PutFile(iOver); }, FS_FILE_WRITEERROR, "copy to the phone: /d/f"},
        {kUnlink, 13, [] { return Act(FsDeleteFile, "/d/f"); }, 1, "delete: /d/f"},
        {sRemoveFolder, 39, [] { return Act(FsRemoveDir, "/d"); }, 1, "remove folder: /d"},
        {sMakeFolder, 77, [] { return Act(FsMkDir, "/e"); }, 0, "make folder: /e"},
        {kStat, 5, [] { return Move("/d/f", "/d/g", 1, 0); }, FS_FILE_READERROR,
         "rename or move: /d/f to /d/g"},
        {sRename, 2, [] { return Move("/d/f", "/d/g", 1, 1); }, FS_FILE_WRITEERROR,
         "rename or move: /d/f to /d/g"},
        {kStatFs, 2, [] { return Type("cd x"); }, FS_EXEC_ERROR, "change folder: /d/x"},
        {kStat, 40, [] { return Type("cd ."); }, FS_EXEC_ERROR, "change folder: /d"},
        {kStatFs, 2, [] { return Type("ln f x"); }, FS_EXEC_ERROR, "make link: /d/x.lnk to /d/f"},
        {kMakeLink, 17, [] { return Type("ln f x"); }, FS_EXEC_OK, "make link: /d/x.lnk to /d/f"},
        {kStat, 2, [] { return Execute("/d/f", "properties").first; }, FS_EXEC_OK, "properties: /d/f"},
    };
    const std::map<uint32_t, std::string> words = {
        {2, "no such file or folder (2)"}, {5, "the flash memory failed (5)"},
        {13, "permission denied (13)"},    {16, "in use (16)"},
        {17, "exists already (17)"},       {20, "not a folder (20)"},
        {21, "is a folder (21)"},          {28, "no space left (28)"},
        {39, "folder not empty (39)"},     {40, "too many links in the path (40)"},
        {77, "unknown error (77)"},
    };
    for (const auto& [sRequest, iErrorNo, call, iResult, sBegin] : rows) {
        m_phone.AddFile("d/f", Pattern(5000));
        m_phone.Misbehave(Action::Refuse, sRequest, -1, iErrorNo);
        EXPECT_EQ(call(), iResult) << sBegin;
        EXPECT_EQ(Failures(), sBegin + ": the phone refused it: " + words.at(iErrorNo) + "\n");
        m_phone.phone.Behave();
    }
}

TEST_F(FrontReasons, FailuresWithoutARefusal) {
    const int iOver = FS_COPYFLAGS_OVERWRITE;
    const std::string sLong(300, 'x');
    char sVerb[] = "open";
    const std::pair<std::function<int()>, std::string> rows[] = {
        {[] { return Get("/d/f", "/dev/full", iOver); },
         "copy from the phone: /d/f: the local file cannot be written: No space left on device"},
        {[&] { return Get("/d/f", m_local.Path("no/f"), iOver); },
         "copy from the phone: /d/f: the local file cannot be written: No such file or directory"},
        {[&] { return Put(m_local.Path("no"), "/d/f", iOver); },
         "copy to the phone: /d/f: the local file is missing, no plain file, or 4 GB or larger"},
        {[&] { return Put(m_local.Path("f"), "/" + sLong, iOver); },
         "copy to the phone: /" + sLong + ": the path is too long for the phone"},
        {[] { return Move("/d/f", "/g", 0, 0); },
         "copy on the phone: /d/f to /g: the phone has no such operation"},
        {[] { return Type("cd f"); }, "change folder: /d/f: it is not a folder"},
        {[&] { return Type("cd " + sLong + sLong); },
         "change folder: /d/" + sLong + sLong + ": the path is too long"},
        {[] { return FsDeleteFile(nullptr); }, "delete: a path is missing or longer than 1023 bytes"},
        {[&] { return FsExecuteFile(nullptr, nullptr, sVerb); },
         "execute: a path is missing or longer than 1023 bytes"},
        {[&] {
             m_phone.phone.WithFiles([](handset::FileSystem& files) { files.SetFreeBlocks(0); });
             return PutFile(iOver);
         },
         "copy to the phone: /d/f: no space left on the phone"},
        {[&] {
             m_phone.Misbehave(Action::Cut, kRead, 1, 6);
             return GetFile();
         },
         "copy from the phone: /d/f: the handset's answer cannot be used"},
        {[&] {
             m_phone.Misbehave(Action::Unplug, kRead, 1, 0, 1);
             return GetFile();
         },
         "copy from the phone: /d/f: the handset stopped answering"},
    };
    for (const auto& [call, sLine] : rows) {
        call();
        EXPECT_EQ(Failures(), sLine + "\n");
    }
}

TEST_F(FrontReasons, ExistingTargetsAndAbortsAreNotFailures) {
    EXPECT_EQ(Get("/d/f", m_local.Path("f")), FS_FILE_EXISTSRESUMEALLOWED);
    EXPECT_EQ(PutFile(0), FS_FILE_EXISTSRESUMEALLOWED);
    EXPECT_EQ(Move("/d/f", "/d", 1, 0), FS_FILE_EXISTS);
    EXPECT_EQ(Act(FsMkDir, "/d"), 1);
    EXPECT_EQ(List("/nvm").size(), 0u);
    m_host.onProgress = [](int) { return 1; };
    EXPECT_EQ(GetFile(), FS_FILE_USERABORT);
    EXPECT_EQ(PutFile(FS_COPYFLAGS_OVERWRITE), FS_FILE_USERABORT);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
}

TEST_F(FrontReasons, MovesThatKeepThePhonesFile) {
    const int iMove = FS_COPYFLAGS_OVERWRITE | FS_COPYFLAGS_MOVE;
    for (const auto& [response, sAnnounced] :
         {std::pair(Packet(kStat, {0, 0x81A4, 5001, 1, 0, 0, 0}), "5001"),
          {Packet(kStat, {13, 0, 5000, 0, 0, 0, 0}), "no size"}}) {
        m_phone.Answer(kStat, response);
        EXPECT_EQ(GetFile(iMove), FS_FILE_READERROR);
        EXPECT_EQ(Failures(), std::string("move from the phone: /d/f: 5000 bytes arrived, but the phone "
                                          "announced ") +
                                  sAnnounced + "; the phone's file stays\n");
        EXPECT_EQ(m_local.Read("g"), Pattern(5000));
    }
    EXPECT_EQ(m_phone.CountOf(kUnlink), 0);
    m_phone.Answer(kStat, Packet(kStat, {0, 0x81A4, 5000, 1, 0, 0, 0}));
    m_phone.Misbehave(Action::Refuse, kUnlink, 1, 30);
    EXPECT_EQ(GetFile(iMove), FS_FILE_OK);
    EXPECT_EQ(Failures(),
              "move from the phone: /d/f: copied, but not deleted on the phone: the phone refused it: "
              "read-only (30)\n");
}

// The calls of Double Commander when its user deletes the folder that is shown as empty.
TEST_F(FrontReasons, TheSettingsFolderIsNotEmptied) {
    m_phone.AddFile("nvm/num/1", {1});
    EXPECT_EQ(NamesIn("/nvm/"), Lines{});
    EXPECT_EQ(Act(FsRemoveDir, "/nvm"), 1);
    EXPECT_EQ(Failures(), "remove folder: /nvm: the phone refused it: folder not empty (39)\n");
    EXPECT_EQ(NamesIn("/nvm/num"), Lines{"1"});
}

class FrontNoHandset : public HostTest {
protected:
    FrontNoHandset() { m_phone.root.Clear(); }

    void Plug(handset::Handset& phone, const std::string& sBusName, const Interfaces& interfaces) {
        m_phone.root.Plug(phone, {0x05C6, 0x3197, sBusName}, interfaces);
    }
    /// Lists the root, which fails, and compares the reason.
    void ExpectReason(const std::string& sReason) {
        m_host.TakeLog();
        EXPECT_EQ(NamesIn("/"), Lines{});
        const Lines log = m_host.TakeLog();
        EXPECT_EQ(log.empty() ? "" : log.back(), "6 list: /: no handset (" + sReason + ")");
        FsDisconnect(nullptr);
    }
};

TEST_F(FrontNoHandset, ReasonsOfOneHandset) {
    EXPECT_EQ(Put("/dev/null", "/f"), FS_FILE_NOTFOUND);
    EXPECT_EQ(m_host.TakeLog(), Lines{"6 copy to the phone: /f: no handset (not connected)"});
    ExpectReason("none is attached");
    Plug(m_phone.phone, "1-1", {{"ttyACM0", 0}, {"ttyUSB1", 2, true}});
    ExpectReason("attached, but without a usable diagnostic port");
    m_phone.root.Clear();
    Plug(m_phone.phone, "1-1", {{"ttyUSB2", 1}});
    ExpectReason("port COM3 is gone");
    m_phone.root.Clear();
    Plug(m_phone.phone, "1-1", {{"ttyUSB2", 1, true}});
    const int fdOther = open(m_phone.phone.TtyPath().c_str(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(flock(fdOther, LOCK_EX), 0);
    ExpectReason("port COM3 is held by another program");
    close(fdOther);
    InjectedFaults().bOpenIsDenied = true;
    ExpectReason("no permission to open port COM3");
    InjectedFaults().bOpenIsDenied = false;
    InjectedFaults().bSetCommStateFails = true;
    ExpectReason("port COM3 cannot be opened");
    InjectedFaults().bSetCommStateFails = false;
    m_phone.Misbehave(Action::Ignore, "", -1);
    ExpectReason("the handset on port COM3 does not answer");
}

TEST_F(FrontNoHandset, HandsetsWithoutAPortAreSkipped) {
    handset::Handset other;
    Plug(other, "1-1", {{"ttyACM0", 0}});
    Plug(m_phone.phone, "1-2", {{"ttyUSB7", 1}});
    ExpectReason("port COM8 is gone; 2 handsets are attached");
    m_phone.root.Clear();
    Plug(other, "1-1", {{"ttyACM0", 0}});
    Plug(m_phone.phone, "1-2", {{"ttyUSB7", 1, true}});
    m_phone.AddFolder("brew");
    EXPECT_EQ(NamesIn("/"), Lines{"brew"});
}

} // namespace
