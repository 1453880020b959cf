// qdiag efs as its users run it: what is on the simulated handset, in the archives, and what arrives.
#include <signal.h>

#include <atomic>
#include <fstream>

#include "handset/state.h"
#include "program_fixture.h"

namespace {

using handset::FileSystem;
using testing::HasSubstr;

const std::string kRename = "4B 13 0E 00";
const std::string kMakeFolder = "4B 13 09 00";
const std::string kChangeMode = "4B 13 12 00";

class QdiagEfsTest : public ProgramTest {
protected:
    QdiagEfsTest() : ProgramTest(QUILLET_QDIAG " efs") {}

    void Files(const std::function<void(FileSystem&)>& work) { m_phone.phone.WithFiles(work); }

    static std::string DigestOf(const Bytes& content) {
        return std::to_string(content.size()) + " " +
               std::to_string(std::hash<std::string>()({content.begin(), content.end()}));
    }

    /// Returns mode, and content or target, of each entry of the phone.
    std::map<std::string, std::string> Everything() {
        std::map<std::string, std::string> entries;
        Files([&](FileSystem& files) {
            for (const handset::Listed& listed : files.List()) {
                handset::Status status;
                std::string sText;
                if (listed.kind == handset::Kind::Link)
                    files.ReadLink(listed.path, sText);
                else
                    files.Stat(listed.path, status);
                if (listed.kind == handset::Kind::File)
                    sText = DigestOf(*files.Content(listed.path));
                entries[listed.path] = std::to_string(status.mode) + " " + sText;
            }
        });
        return entries;
    }

    /// Runs qdiag and sends it SIGINT when the phone has received `iCount` requests with that prefix.
    ProgramOutcome RunInterrupted(const std::string& sArguments, const std::string& sPrefix, int iCount) {
        std::atomic<int> iLeft = iCount;
        m_phone.phone.OnRequest([&, prefix = Hex(sPrefix)](const Bytes& request) {
            if (!handset::BeginsWith(request, prefix) || --iLeft != 0)
                return;
            pid_t iProcess = 0;
            std::ifstream(m_local.Path("pid")) >> iProcess;
            kill(iProcess, SIGINT);
        });
        const ProgramOutcome outcome = Shell("cd '" + m_local.Path() + "' && sh -c 'echo $$ > pid; exec " +
                                             m_program + " " + sArguments + "'");
        m_phone.phone.OnRequest(nullptr);
        std::filesystem::remove(m_local.Path("pid"));
        return outcome;
    }

    void ExpectNoTraces(size_t iLocalFiles) {
        EXPECT_EQ(m_phone.OpenCount(), 0U);
        for (const auto& [sPath, sText] : Everything())
            EXPECT_THAT(sPath, testing::Not(HasSubstr(".quillet-")));
        EXPECT_EQ(CountIn(m_local.Path().c_str()), iLocalFiles);
    }

    PluggedPhone m_phone;
};

/// Those of efs backup and efs restore.
class QdiagArchiveTest : public QdiagEfsTest {
protected:
    void SetUp() override {
#ifndef QUILLET_ARCHIVE
        Expect({{"backup x", 1, "this qdiag was built without libarchive"},
                {"restore x", 1, "this qdiag was built without libarchive"}});
        GTEST_SKIP();
#endif
    }

    struct Member {
        std::string name;
        char type = '0';
        std::string content = "";
        std::string target = "";
        size_t missing = 0; // bytes that the header promises beyond the content
    };

    /// Writes a tar archive of the oldest form.
    void WriteTar(const std::string& sName, const std::vector<Member>& members) {
        std::string sTar;
        for (const Member& member : members) {
            std::string sHeader(512, '\0');
            const auto put = [&](size_t iOffset, const std::string& sText) {
                sHeader.replace(iOffset, sText.size(), sText);
            };
            char size[16];
            snprintf(size, sizeof size, "%011zo", member.content.size() + member.missing);
            put(0, member.name);
            put(100, "0000644");
            put(124, size);
            put(136, "00000000000");
            put(148, "        ");
            put(156, std::string(1, member.type));
            put(157, member.target);
            unsigned iSum = 0;
            for (const unsigned char c : sHeader)
                iSum += c;
            snprintf(size, sizeof size, "%06o", iSum);
            put(148, std::string(size) + '\0' + ' ');
            sTar += sHeader + member.content;
            sTar.resize((sTar.size() + 511) / 512 * 512);
        }
        sTar.resize(sTar.size() + 1024);
        std::ofstream(m_local.Path(sName), std::ios::binary) << sTar;
    }
};

TEST_F(QdiagEfsTest, LsStatAndDfReportWhatThePhoneDoes) {
    m_phone.AddFile("dir/file", Pattern(1536));
    m_phone.AddLink("dir/link", "file");
    m_phone.AddLink("dir/lost", "nowhere\n");
    Files([](FileSystem& files) {
        files.ChangeMode("dir/file", 04640);
        files.SetTimes("dir/file", {1, 951782400, 0xFFFFFFFF});
        files.SetFreeBlocks(100);
    });
    Expect({
        {"ls -p", 0, "dir/\n"},
        {"ls dir", 0, "file\nlink\nlost\n"},
        {"ls dir/none", 1, "\"/dir/none\": the phone refused it: no such file or folder (2)"},
        {"stat dir/file/", 0,
         "kind                  file\nmode                  4640\nsize                  1536\n"},
        {"stat //dir/./file", 0,
         "accessed              1970-01-01 00:00:01\nmodified              2000-02-29 00:00:00\n"
         "changed               2106-02-07 06:28:15\n"},
        {"stat /", 0, "kind                  folder\n"},
        {"stat dir/lost", 0, "target                nowhere\\x0A\n"},
        {"stat --json dir/lost", 0, "\"target\": \"nowhere\\u000A\"\n}]\n"},
        {"stat --json dir/file dir", 0, "\"changed\": \"2106-02-07T06:28:15Z\"\n},\n{\n  \"path\": \"/dir\""},
        {"stat dir/none dir/link", 1, "kind                  link\n"},
        {"stat dir/none dir/link", 1, "\"/dir/none\": the phone refused it: no such file or folder (2)"},
        {"stat dir/../x", 2, "has \"..\" in it"},
        {"df", 0, "free bytes            51200\n"},
        {"df --json", 0, "  \"id\": 20965,\n  \"type\": 844318277,\n  \"block_size\": 512,\n"},
    });
    m_phone.Misbehave(Action::Refuse, kStatFs, -1, 5);
    Expect({{"df --json", 1, "\"id\": null,\n  \"type\": null,\n"}});
    EXPECT_EQ(m_phone.OpenCount(), 0U);
}

TEST_F(QdiagArchiveTest, ThereAndBack) {
    const std::string sLong(120, 'n');
    for (const size_t iSize : {0, 1, 511, 512, 1536, 1537, 100000})
        m_phone.AddFile("files/" + std::to_string(iSize), Pattern(iSize));
    for (const std::string sName : {"a\nb", "caf\xC3\xA9", "caf\xE9", "-rf", "\\x41", " ", "*"})
        m_phone.AddFile("names/" + sName, Bytes{1});
    m_phone.AddFile("nvm/num/71", Bytes{7});
    m_phone.AddFile(sLong + "/" + sLong, Bytes{2});
    m_phone.AddLink("a", "b");
    m_phone.AddLink("b", "a");
    m_phone.AddLink("nvm/out", "/../files\xE9/..");
    m_phone.AddLink("to nvm", "/nvm");
    Files([](FileSystem& files) {
        files.AddFolder("empty", 0755);
        files.AddFile("read only", Bytes{3}, 0400);
        files.AddFile("/files\xE9", Bytes{4});
        files.ChangeMode("names", 0500);
        files.SetTimes("nvm/num/71", {1, 951782400, 951782401});
    });
    const auto before = Everything();
    for (const std::string sEnd : {"", ".gz", ".tzst"}) {
        Expect({{"backup all.tar" + sEnd, 0,
                 std::to_string(before.size()) + " entries kept in all.tar" + sEnd + "\n"},
                {"restore all.tar" + sEnd, 0, "the phone holds all " + std::to_string(before.size())}});
        Files([](FileSystem& files) { files.Clear(); });
        Expect({{"restore --yes all.tar" + sEnd, 0, "restored and read back"}});
        EXPECT_EQ(Everything(), before);
    }
    // Other programs read it without complaint.
    const ProgramOutcome tar =
        Shell("cd '" + m_local.Path() + "' && tar --utc -tvf all.tar nvm 2> /dev/null");
    EXPECT_EQ(tar.status, 0);
    EXPECT_THAT(tar.output, testing::StartsWith("drwxrwxrwx 0/0"));
    EXPECT_THAT(tar.output, HasSubstr(" 1 2000-02-29 00:00 nvm/num/71\n"));
    ExpectNoTraces(3);
}

TEST_F(QdiagArchiveTest, RestoreWritesOnlyWhatDiffersAndWasAskedFor) {
    for (const std::string sName : {"same", "content", "size", "gone", "mode", "x/deep/file"})
        m_phone.AddFile("dir/" + sName, Pattern(3000));
    m_phone.AddFile("other/gone", Bytes{1});
    m_phone.AddLink("dir/link", "same");
    m_phone.AddLink("dir/was link", "same");
    Expect({{"backup all.tgz", 0, ""}, {"backup dir.tar /dir/", 0, "11 entries kept"}});
    const auto before = Everything();
    Files([](FileSystem& files) {
        Bytes other = Pattern(3000);
        other.back() ^= 1;
        files.AddFile("dir/content", other);
        files.AddFile("dir/size", Bytes{1});
        files.ChangeMode("dir/mode", 0600);
        for (const char* sPath : {"dir/gone", "dir/link", "dir/was link", "dir/x/deep/file", "other/gone"})
            files.Unlink(sPath);
        files.RemoveFolder("dir/x/deep");
        files.RemoveFolder("dir/x");
        files.AddLink("dir/link", "/nvm");
        files.AddFile("dir/was link", Bytes{2});
        files.AddFile("dir/mine", Bytes{3});
    });
    const auto changed = Everything();
    m_phone.phone.ClearRequests();
    for (const std::string sOptions : {"--dry-run", "< /dev/null", "< all.tgz"})
        Expect({{"restore all.tgz /dir " + sOptions, sOptions[0] == '-' ? 0 : 1,
                 "/dir/content  other content\n"
                 "/dir/gone  new file, 3000 bytes\n"
                 "/dir/link  target: \"/nvm\" on the phone, \"same\" in the archive\n"
                 "/dir/mode  mode: 0600 on the phone, 0666 in the archive\n"
                 "/dir/size  size: 1 on the phone, 3000 in the archive\n"
                 "/dir/was link  a file on the phone, a link in the archive\n"
                 "/dir/x  new folder\n"
                 "/dir/x/deep  new folder\n"
                 "/dir/x/deep/file  new file, 3000 bytes\n"
                 "9 of 11 entries differ\n"}});
    EXPECT_EQ(Everything(), changed);
    EXPECT_EQ(m_phone.CountOf(kMakeFolder) + m_phone.CountOf(kMakeLink) + m_phone.CountOf(kChangeMode), 0);
    Expect({{"restore all.tgz nowhere --yes", 1, "has nothing in \"/nowhere\""},
            {"restore all.tgz /dir --yes", 0, "restored and read back"}});
    EXPECT_EQ(m_phone.CountOf(kWrite), 4 * 6); // blocks of the four files that differ
    auto after = before;
    after["/dir/mine"] = changed.at("/dir/mine");
    after.erase("/other/gone");
    EXPECT_EQ(Everything(), after);
    ExpectNoTraces(2);
}

TEST_F(QdiagArchiveTest, BackupNamesWhatItLeavesOut) {
    m_phone.AddFile("a/good", Pattern(2000));
    m_phone.AddFile("a/restless", Pattern(2000));
    m_phone.AddFile("a/shrinks", Pattern(4000));
    m_phone.AddFile("a/settles", Pattern(4000));
    m_phone.AddLink("a/broken", "nowhere");
    m_phone.AddFile("a/" + std::string(240, 'l'), Bytes{1});
    Files([](FileSystem& files) {
        files.AddFile("a/secret", Bytes{1}, 0);
        files.AddFolder("a/closed", 0);
    });
    // Files change between their status and their last block.
    int iChanges = 0;
    m_phone.phone.OnRequest([&](const Bytes& request) {
        if (handset::BeginsWith(request, Hex(kRead)))
            Files([&](FileSystem& files) {
                files.SetTimes("a/restless", {0, static_cast<uint32_t>(++iChanges), 0});
                if (iChanges == 4)
                    files.AddFile("a/settles", Pattern(5000));
                files.AddFile("a/shrinks", Pattern(static_cast<size_t>(4000 - iChanges)));
            });
    });
    Expect({{"backup some.tar", 1, "qdiag: entries that were left out: 6\n"}});
    m_phone.phone.OnRequest(nullptr);
    const std::string sOut = Run("backup -f more.tar").output;
    for (const char* sText :
         {"left out: \"/a/broken\": a broken link; it leads to \"nowhere\"\n",
          "left out: \"/a/secret\": the phone refused it: permission denied (13)\n",
          "left out: \"/a/closed\": its content: the phone refused it: permission denied (13)\n"})
        EXPECT_THAT(sOut, HasSubstr(sText));
    Expect({{"backup some.tar /a/good", 1, "already exists; --force replaces it"},
            {"backup x.tar /a/good", 1, "\"/a/good\" is not a folder"},
            {"backup x.tar /a/broken", 1, "\"/a/broken\" is a link to \"nowhere\""},
            {"backup x.tar /none", 1, "no such file or folder (2)"}});
    const ProgramOutcome tar =
        Shell("cd '" + m_local.Path() + "' && tar -tf some.tar && tar -xOf some.tar a/settles | wc -c");
    EXPECT_EQ(tar.output, "a/\na/good\na/settles\na/closed/\n5000\n");
    ExpectNoTraces(2);
}

TEST_F(QdiagArchiveTest, BackupLeavesNothingWhenItFails) {
    m_phone.AddFile("big", Pattern(200000));
    m_local.Write("kept.tar", {'k'});
    m_local.Write("taken.tar.part", {'t'});
    Expect({{"backup kept.tar", 1, "already exists; --force replaces it"},
            {"backup taken.tar", 1, "already exists; the backup is written there first"},
            {"backup /dev/full --force", 1, "\"/dev/full\" is not a regular file"},
            {"backup none/x.tar", 1, "No such file"}});
    const ProgramOutcome full =
        Shell("cd '" + m_local.Path() + "' && ulimit -f 100 && " + m_program + " backup -f kept.tar");
    EXPECT_EQ(full.status, 1);
    EXPECT_THAT(full.output, HasSubstr("File too large"));
    const ProgramOutcome stopped = RunInterrupted("backup -f kept.tar", kRead, 20);
    EXPECT_EQ(stopped.status, 1);
    EXPECT_THAT(stopped.output, HasSubstr("interrupted: no backup was written"));
    EXPECT_EQ(RunInterrupted("backup -f kept.tar", kReadFolder, 1).status, 1);
    m_phone.Misbehave(Action::Ignore, kRead, 1, 0, 20); // is asked for again
    Expect({{"backup second.tar", 0, "1 entries kept"}});
    ExpectNoTraces(3);
    m_phone.Misbehave(Action::Unplug, kRead, 1, 0, 20);
    Expect({{"backup -f kept.tar", 1, "the handset stopped answering: no backup was written"}});
    EXPECT_EQ(m_local.Read("kept.tar"), Bytes{'k'});
    EXPECT_EQ(CountIn(m_local.Path().c_str()), 3U);
}

TEST_F(QdiagArchiveTest, HostileArchivesAreRefusedBeforeThePhoneIsAsked) {
    const struct {
        std::vector<Member> members;
        const char* says;
    } kRows[] = {
        {{{"/nvm/x"}}, "refused: \"/nvm/x\": its path is absolute"},
        {{{"a/../../nvm"}}, "its path has \"..\" in it"},
        {{{".."}}, "its path has \"..\" in it"},
        {{{"a", '1', "", "b"}}, "it is a hard link"},
        {{{"a", '3'}}, "it is a device"},
        {{{"a", '4'}}, "it is a device"},
        {{{"a", '6'}}, "it is a pipe"},
        {{{"a", '2'}}, "it is a link to nothing"},
        {{{".", '0', "x"}}, "it would replace the phone's root"},
        {{{"a"}, {"./a//", '5'}}, "it occurs twice"},
        {{{"a", '2', "", "/nvm"}, {"a/num", '0', "x"}},
         "\"a/num\": it lies below an entry that is no folder"},
        {{{"a/b/c", '0', "x"}, {"a", '2', "", "/nvm"}}, "it lies below an entry that is no folder"},
        {{{"a", '0', "x"}, {"a/b", '5'}}, "it lies below an entry that is no folder"},
        {{{"a", '0', "x", "", 5000}}, "is damaged or is no archive"},
        {{{"a", '0', "x", "", size_t{1} << 32}, {"b"}}, "is damaged or is no archive"},
        {{}, "has nothing to restore"},
    };
    m_phone.phone.ClearRequests();
    for (const auto& row : kRows) {
        WriteTar("bad.tar", row.members);
        Expect({{"restore --yes bad.tar", 1, row.says}});
    }
    Expect(
        {{"restore --yes none.tar", 1, "cannot be read"}, {"restore --yes .", 1, "is not a regular file"}});
    EXPECT_TRUE(m_phone.Requests().empty());
}

TEST_F(QdiagArchiveTest, DamagedArchivesAreRefusedBeforeThePhoneIsAsked) {
    m_phone.AddFile("a", Pattern(3000));
    m_phone.AddFile("b", Pattern(10));
    Expect({{"backup x.tar", 0, ""}, {"backup x.tgz", 0, ""}, {"backup x.tzst", 0, ""}});
    m_phone.phone.ClearRequests();
    for (const std::string sName : {"x.tar", "x.tgz", "x.tzst"}) {
        const Bytes whole = m_local.Read(sName);
        ASSERT_FALSE(whole.empty());
        for (size_t iSize = 0; iSize < std::min<size_t>(whole.size(), 5000);
             iSize += iSize < 4096 ? 512 : 100) {
            m_local.Write(sName, Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(std::min(
                                                                          iSize, whole.size() - 9))));
            Expect({{"restore --yes " + sName, 1, "nothing was written"}});
        }
        Bytes flipped = whole;
        flipped[flipped.size() * 2 / 5] ^= 0x55;
        m_local.Write(sName, flipped);
        Expect({{"restore --yes " + sName, 1, "nothing was written"}});
    }
    EXPECT_TRUE(m_phone.Requests().empty());
}

TEST_F(QdiagArchiveTest, NothingIsWrittenThroughLinksOfThePhoneOrInPlaceOfFolders) {
    m_phone.AddFile("nvm/num", Bytes{7});
    m_phone.AddLink("a", "/nvm");
    m_phone.AddFile("b/file", Bytes{1});
    m_phone.AddFile("c", Bytes{1});
    m_phone.AddLink("d", "nvm/num");
    const auto before = Everything();
    WriteTar("x.tar", {{"a/num", '0', "x"}, {"b", '2', "", "/nvm"}, {"c", '5'}, {"c/d", '0', "x"}});
    Expect({{"restore --yes x.tar", 1,
             "/a  a link on the phone, a folder in the archive (cannot be restored)\n"
             "/a/num  \"/a\" is a link on the phone (cannot be restored)\n"
             "/b  a folder on the phone, a link in the archive (cannot be restored)\n"
             "/c  a file on the phone, a folder in the archive (cannot be restored)\n"}});
    EXPECT_EQ(Everything(), before);
    // A file takes the place of a link, not of the file that the link leads to.
    WriteTar("y.tar", {{"a/num", '0', "x"}, {"d", '0', "new"}});
    Expect({{"restore --yes y.tar", 1, "2 of 3 entries were not restored"}});
    EXPECT_EQ(m_phone.Content("d"), (Bytes{'n', 'e', 'w'}));
    EXPECT_EQ(m_phone.Content("nvm/num"), Bytes{7});
}

TEST_F(QdiagArchiveTest, AnArchiveOfAnotherPhoneIsAnnounced) {
    m_phone.AddFile("a", Bytes{1});
    Expect({{"backup x.tar", 0, ""}});
    EXPECT_THAT(Run("restore x.tar").output, testing::Not(HasSubstr("warning")));
    m_phone.phone.WithState([](handset::State& state) { state.nv.items[0].values[0] = {9, 9, 9, 9}; });
    Expect({{"restore x.tar", 0,
             "warning: the archive is from another phone: SIM-100, serial number 0x80345678, software "
             "QSIM-1.2.3; this is SIM-100, serial number 0x09090909"}});
    WriteTar("y.tar", {{"a", '0', "x"}});
    Expect({{"restore --dry-run y.tar", 0, "warning: the archive does not say which phone it is from"}});
}

TEST_F(QdiagArchiveTest, RestoreSurvivesLostResponsesAndReportsRefusals) {
    m_phone.AddFile("dir/file", Pattern(3072));
    m_phone.AddFile("dir/other", Pattern(3072));
    m_phone.AddLink("dir/link", "file");
    const auto before = Everything();
    Expect({{"backup x.tar", 0, ""}});
    Files([](FileSystem& files) { files.Clear(); });
    for (const std::string& sPrefix : {kMakeFolder, kMakeLink, kRename, kOpenFile, kCloseFile, kWrite})
        m_phone.Misbehave(Action::Drop, sPrefix);
    Expect({{"restore -y x.tar --timeout 1500", 0, "restored and read back"}});
    EXPECT_EQ(Everything(), before);

    const struct {
        std::string prefix;
        uint32_t error;
        const char* says;
    } kRows[] = {
        {kMakeFolder, 13, "not restored: \"/dir\": the phone refused it: permission denied (13)"},
        {kRename, 5, "not restored: \"/dir/file\": the phone refused it: the flash memory failed (5)"},
        {kWrite, 28, "the phone is full: the restore is not complete; start it again to go on"},
        {kOpenFile + "C1", 24, "not restored: \"/dir/file\": the phone refused it: too many open files (24)"},
    };
    for (const auto& row : kRows) {
        Files([](FileSystem& files) { files.Clear(); });
        m_phone.phone.Behave();
        m_phone.Misbehave(Action::Refuse, row.prefix, -1, row.error);
        Expect({{"restore -y x.tar", 1, row.says}});
        EXPECT_FALSE(m_phone.Exists("dir/file"));
        ExpectNoTraces(1);
    }
    m_phone.phone.Behave();
    // What the phone holds is read back, whatever it answered.
    Files([](FileSystem& files) { files.Clear(); });
    m_phone.Answer(kWrite, Packet(kWrite, {0, 0, 512, 0}));
    Expect({{"restore -y x.tar", 1, "\"/dir/file\" was written, but does NOT hold what the archive has"}});
}

TEST_F(QdiagArchiveTest, AnInterruptedRestoreGoesOn) {
    for (const char* sName : {"1", "2", "3"})
        m_phone.AddFile(std::string("dir/") + sName, Pattern(5120));
    const auto before = Everything();
    Expect({{"backup x.tar", 0, ""}});
    Files([](FileSystem& files) {
        files.Clear();
        files.SetFreeBlocks(15); // for one file and a half
    });
    Expect({{"restore -y x.tar", 1, "the phone is full"}});
    EXPECT_EQ(m_phone.Content("dir/1"), Pattern(5120));
    EXPECT_FALSE(m_phone.Exists("dir/2"));
    Files([](FileSystem& files) { files.SetFreeBlocks(1000); });
    const ProgramOutcome stopped = RunInterrupted("restore -y x.tar", kWrite, 15);
    EXPECT_EQ(stopped.status, 1);
    EXPECT_THAT(stopped.output,
                HasSubstr("interrupted: the restore is not complete; start it again to go on"));
    ExpectNoTraces(1);
    EXPECT_EQ(m_phone.Content("dir/2"), Pattern(5120));
    m_phone.phone.ClearRequests();
    Expect({{"restore -y x.tar", 0, "1 of 4 entries differ\n"}});
    EXPECT_EQ(m_phone.CountOf(kWrite), 10);
    EXPECT_EQ(Everything(), before);
    EXPECT_THAT(RunInterrupted("restore -y x.tar", kRead, 2).output,
                HasSubstr("interrupted: nothing was written"));
    Files([](FileSystem& files) { files.Unlink("dir/3"); });
    m_phone.Misbehave(Action::Unplug, kWrite, 1, 0, 5);
    Expect({{"restore -y x.tar", 1, "an incomplete copy may remain on the phone as \"/dir/.quillet-"}});
}

} // namespace
