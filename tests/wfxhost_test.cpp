// The command-line host as its users run it: the program, the plug-in's file, a handset.
#include "program_fixture.h"

namespace {

class WfxhostTest : public ProgramTest {
protected:
    WfxhostTest() : ProgramTest(QUILLET_WFXHOST " --plugin " QUILLET_PLUGIN_FILE) {}
};

class WfxhostPhoneTest : public WfxhostTest {
protected:
    PluggedPhone m_phone;
};

TEST_F(WfxhostTest, ExitStatusOfWrongUsageAndFailures) {
    m_settings = "QUILLET_DEVICE_ROOT=/nonexistent";
    Expect({
        {"--help", 0, "Usage: wfxhost [OPTIONS]"},
        {"rm --help", 0, "Usage: wfxhost rm PATH..."},
        {"help ls", 0, "Other names: dir"},
        {"--version", 0, "wfxhost " QUILLET_VERSION "\n"},
        {"dance", 2, "unknown command \"dance\""},
        {"ls / extra", 2, "usage: wfxhost ls [PATH]"},
        {"get", 2, "usage: wfxhost get PHONE [LOCAL]"},
        {"rm ''", 2, "an empty argument"},
        {"--loud ls", 2, "unknown option"},
        {"--force ls", 2, "ls has no option --force"},
        {"--plugin", 2, "--plugin needs a value (FILE)"},
        {"--json=yes ls", 2, "--json takes no value"},
        {"ls -1x", 2, "unknown option \"-1x\""},
        {"find -size 5x", 2, "\"5x\" is not a number"},
        {"find --type x", 2, "-type: f means files"},
        {"put -", 2, "standard input has no name"},
        {"--plugin /dev/null ls", 1, "cannot load the plug-in /dev/null"},
        {"ls", 3, "no handset answers"},
        {"put " QUILLET_PLUGIN_FILE, 3, "no handset answers"},
        {"rm -rf '*'", 3, "no handset answers"},
        {"du", 3, "no handset answers"},
    });
}

TEST_F(WfxhostPhoneTest, SilentHandsetCountsAsNone) {
    m_phone.Misbehave(Action::Ignore, "", -1);
    Expect({{"mkdir a", 3, "CONNECTED on port COM1"}});
}

TEST_F(WfxhostPhoneTest, Lists) {
    m_phone.AddFile("dir/b \x1B[1m.txt", {'a', 'b', 'c'});
    m_phone.AddFolder("dir/empty");
    Expect({
        {"ls", 0, "dir\n"},
        {"ls dir", 0, "  b \\x1B[1m.txt\nd  -  "},
        {"ls /dir/../dir/./empty/", 0, ""},
        {"ls 'dir/b \x1B[1m.txt'", 0, "-  3  "},
        {"ls dir/none", 1, "no file or folder \"/dir/none\""},
        {"ls -lh dir", 0, "-  3 B  "},
        {"ls -1p dir", 0, "b \\x1B[1m.txt\nempty/\n"},
        {"-v ls 'di?'", 0, "log: CONNECTED on port COM1\n"},
    });
}

TEST_F(WfxhostPhoneTest, FindsAndCounts) {
    const std::string kOdd = "dir/line\nfeed \xFF";
    m_phone.AddFile(kOdd, Pattern(2000));
    m_phone.AddFile("dir/a[1].TXT", Pattern(1024));
    m_phone.AddFile("dir/\xC3\xBC.txt", Pattern(1));
    m_phone.AddFile("dir/sub/deep/b.txt", Pattern(100));
    m_phone.AddLink("dir/sub/up.lnk", "/dir");
    const struct {
        const char* arguments;
        std::string output;
    } kRows[] = {
        {"find -type d", "/\n/dir\n/dir/sub\n/dir/sub/deep\n"},
        {"find dir -maxdepth 0", "/dir\n"},
        {"find dir -name '*.txt'", "/dir/\xC3\xBC.txt\n/dir/sub/deep/b.txt\n"},
        {"find dir -name '?.txt' -size -2c", "/dir/\xC3\xBC.txt\n"},
        {"find dir -iname 'A[[]1].t*t'", "/dir/a[1].TXT\n"},
        {"find dir -name '[!a]*[a-e]? *' -print0", "/" + kOdd + '\0'},
        {"find dir -name 'line*'", "/dir/line\\x0Afeed \xFF\n"},
        {"find dir/sub -name '*[!tk]'", "/dir/sub\n/dir/sub/deep\n"},
        {"find 'd*/s?[b]' -size +1 -type f -name '*b*'", "/dir/sub/deep/b.txt\n"},
        {"find dir -size 1k -type f -name '*.?X*'", "/dir/a[1].TXT\n"},
        {"find -name 'a[1].TXT'", ""}, // a set, not the exact name
        {"find -name 'a[1'", ""},
        {"ls -1 'dir/a[1].TXT'", "a[1].TXT\n"},
        {"du -s dir", "3129\t/dir\n"},
        {"du -ab dir/sub",
         "100\t/dir/sub/deep/b.txt\n100\t/dir/sub/deep\n4\t/dir/sub/up.lnk\n104\t/dir/sub\n"},
        {"du --json dir/sub/deep",
         "[\n{\"path\": \"/dir/sub/deep\", \"utf8\": true, \"bytes\": 100, \"files\": 1, \"folders\": "
         "1}\n]\n"},
        {"cd --json dir", "{\"path\": \"/dir\", \"utf8\": true}\n"},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(Run(row.arguments).output, row.output) << row.arguments;
    m_phone.Misbehave(Action::Unplug, kOpenFolder, 1, 0, 2);
    Expect({{"du", 1, "the handset stopped answering: not everything was looked at"}});
}

TEST_F(WfxhostPhoneTest, CopiesBothWays) {
    const Bytes content = Pattern(30000);
    m_phone.AddFile("dir/photo.bin", content);
    m_local.Write("mine.bin", content);
    Expect({
        {"get dir/photo.bin", 0, "30000 bytes in "},
        {"get dir/photo.bin", 1, "exists already; --force replaces it"},
        {"--force get dir/photo.bin copy.bin", 0, "100 %  30.0 kB of 30.0 kB"},
        {"get dir/photo.bin nowhere/", 1, "there is no folder \"nowhere/\""},
        {"get dir/none", 1, "the phone has no file \"/dir/none\""},
        {"get dir", 1, "is a folder"},
        {"put mine.bin dir", 0, "30000 bytes in "},
        {"put mine.bin dir/mine.bin", 1, "exists already"},
        {"put mine.bin none/", 1, "the phone has no folder \"/none\""},
        {"put none.bin", 1, "there is no file \"none.bin\""},
    });
    EXPECT_EQ(m_local.Read("photo.bin"), content);
    EXPECT_EQ(m_local.Read("copy.bin"), content);
    EXPECT_EQ(m_phone.Content("dir/mine.bin"), content);
}

TEST_F(WfxhostPhoneTest, ChangesFoldersAndNames) {
    m_phone.AddFile("a.txt", {1});
    m_phone.AddFile("b.txt", {2});
    m_phone.AddFile("kept/file", {3});
    m_phone.AddFile("kept\\file", {4});
    Expect({
        {"mkdir new", 0, ""},
        {"mkdir new", 1, "exists already"},
        {"mkdir none/new", 1, "the phone has no folder \"/none\""},
        {"mv a.txt b.txt", 1, "exists already"},
        {"mv a.txt new", 0, ""},
        {"rmdir new", 1, "is not empty"},
        {"rm new", 1, "is a folder"},
        {"mv new/a.txt b.txt --force", 0, ""},
        {"rmdir new", 0, ""},
        {"rm a.txt", 1, "no file or folder \"/a.txt\""},
        {"rm b.txt", 0, ""},
        {"rmdir /", 1, "root folder"},
        {"rm 'kept\\file'", 1, "a name with a backslash cannot be passed to a plug-in"},
    });
    EXPECT_TRUE(m_phone.Exists("kept/file")); // the other name must not lead to it
    EXPECT_FALSE(m_phone.Exists("new"));
    EXPECT_FALSE(m_phone.Exists("b.txt"));
}

TEST_F(WfxhostPhoneTest, RefusalsOfThePhoneAreFailures) {
    m_phone.AddFile("kept.txt", Pattern(9000));
    m_local.Write("mine.bin", Pattern(9000));
    m_local.Write("old.bin", Pattern(5));
    for (const char* sRequest : {"4B130800", "4B130900", "4B130200"})
        m_phone.Misbehave(Action::Refuse, sRequest, -1, 13);
    Expect({
        {"rm kept.txt", 1, "wfxhost: delete: /kept.txt: the phone refused it: permission denied (13)\n"},
        {"mkdir new", 1, "/new: the phone refused it: permission denied (13)\n"},
        {"mkdir -p new/deep", 1, "/new: the phone refused it: permission denied (13)\n"},
        {"get --force kept.txt old.bin", 1, "/kept.txt: the phone refused it: permission denied (13)\n"},
        {"put mine.bin", 1, "/mine.bin: the phone refused it: permission denied (13)\n"},
    });
    EXPECT_EQ(m_local.Read("old.bin"), Pattern(5));
}

TEST_F(WfxhostPhoneTest, InterruptedListingProvesNothing) {
    m_phone.AddFile("dir/kept.txt", Pattern(10));
    m_phone.AddFile("kept.txt", Pattern(10));
    m_phone.Misbehave(Action::Refuse, "4B130800", -1, 13);
    m_phone.Misbehave(Action::Unplug, "4B130B00", 1, 0, 2); // the folder is listed before and after
    Expect({{"rm kept.txt", 1, "is not known"}});
    m_phone.phone.Behave();
    m_phone.phone.Replug();
    m_phone.Misbehave(Action::Unplug, "4B130B00", 1, 0, 1);
    Expect({{"get -r dir", 1, "the handset stopped answering: nothing was copied"}});
    m_phone.phone.Behave();
    m_phone.phone.Replug();
    m_phone.Misbehave(Action::Unplug, "4B130B00", 1, 0, 1);
    Expect({{"rm -r dir", 1, "the handset stopped answering: nothing was deleted"}});
    EXPECT_TRUE(m_phone.Exists("dir/kept.txt"));
}

TEST_F(WfxhostPhoneTest, UnwritableOutputFails) {
    m_phone.AddFile("kept.txt", Pattern(10));
    m_phone.AddFile("large.bin", Pattern(300000));
    m_settings = "TMPDIR='" + m_local.Path() + "'";
    Expect({{"ls --json / > /dev/full", 1, "the output could not be written"},
            {"cat large.bin > /dev/full", 1, "the output could not be written"}});
    const ProgramOutcome outcome = Shell("{ { " + m_settings + " " + m_program +
                                         " cat large.bin; echo status $? >&2; } | head -c 1; } 2>&1");
    EXPECT_THAT(outcome.output, testing::HasSubstr("the output could not be written\nstatus 1"));
    EXPECT_TRUE(std::filesystem::is_empty(m_local.Path()));
}

TEST_F(WfxhostPhoneTest, AFullDiskLeavesNoPartOfAFile) {
    m_phone.AddFile("dir/large.bin", Pattern(300000));
    m_phone.AddFile("dir/small.bin", Pattern(300));
    m_local.Write("old.bin", Pattern(5));
    m_local.Write("large", Pattern(300000));
    m_settings = "ulimit -f 8 && TMPDIR='" + m_local.Path() + "'";
    Expect({
        {"get dir/large.bin", 1, "/dir/large.bin: the local file cannot be written: File too large\n"},
        {"get -f dir/large.bin old.bin", 1, "cannot be written: File too large\n"},
        {"get -f dir/large.bin /dev/full", 1, "cannot be written: No space left on device"},
        {"get -r dir", 1,
         "not copied: copy from the phone: /dir/large.bin: the local file cannot be written"},
        {"cat dir/large.bin", 1, "cannot be written: File too large\n"},
        {"put - new.bin < large", 1, "cannot write a temporary file; perhaps the disk is full"},
    });
    EXPECT_EQ(m_local.Read("old.bin"), Pattern(5));
    EXPECT_EQ(m_local.Read("dir/small.bin"), Pattern(300));
    EXPECT_EQ(CountIn(m_local.Path("dir").c_str()), 1U);
    EXPECT_EQ(CountIn(m_local.Path().c_str()), 3U);
    EXPECT_FALSE(m_phone.Exists("new.bin"));
    EXPECT_EQ(m_phone.OpenCount(), 0U);
}

TEST_F(WfxhostPhoneTest, StandardInputAndOutputAreFiles) {
    m_phone.AddFile("dir/photo.bin", Pattern(30000));
    m_phone.AddFile("empty", {});
    m_settings = "TMPDIR='" + m_local.Path() + "'";
    Expect({
        {"cat dir/photo.bin empty > back.bin", 0, ""},
        {"get 'dir/*' - > again.bin", 0, ""},
        {"put - dir/in.bin < back.bin", 0, "30000 bytes in "},
        {"put - dir/in.bin < again.bin", 1, "exists already"},
        {"put - dir < back.bin", 1, "needs the name of a file"},
        {"put - none/x < back.bin", 1, "the phone has no folder \"/none\""},
        {"cat dir none", 1, "\"/dir\" is a folder"},
        {"cat none", 1, "the phone has no file \"/none\""},
    });
    EXPECT_EQ(m_local.Read("back.bin"), Pattern(30000));
    EXPECT_EQ(m_local.Read("again.bin"), Pattern(30000));
    EXPECT_EQ(m_phone.Content("dir/in.bin"), Pattern(30000));
    EXPECT_EQ(CountIn(m_local.Path().c_str()), 2U);
}

TEST_F(WfxhostPhoneTest, LostHandsetFailsACopy) {
    m_phone.AddFile("photo.bin", Pattern(100000));
    m_phone.Misbehave(Action::Unplug, "4B130400", 1, 0, 10);
    m_local.Write("photo.bin", {1});
    Expect({{"get -f photo.bin", 1, "the handset stopped answering"}});
    EXPECT_EQ(m_local.Read("photo.bin"), Bytes{1});
    EXPECT_EQ(CountIn(m_local.Path().c_str()), 1U);
}

TEST_F(WfxhostPhoneTest, InterruptStopsACopyCleanly) {
    m_phone.AddFile("dir/photo.bin", Pattern(100000));
    m_local.Write("mine.bin", Pattern(100000));
    m_phone.phone.SetLatency(std::chrono::milliseconds(20));
    const struct {
        const char* command;
        const char* says;
    } kRows[] = {
        {"get dir/photo.bin", "interrupted: \"photo.bin\" was not copied"},
        {"get -r dir", "stopped, interrupted; 1 of 1 file not copied"},
        {"put -r . dir/new", "stopped, interrupted; 1 of 1 file not copied"},
    };
    for (const auto& row : kRows) {
        // The first progress line shows that the copy is running.
        const ProgramOutcome outcome =
            Shell("cd '" + m_local.Path() + "' && mkfifo ../$$.lines && { " + m_program + " " + row.command +
                  " > ../$$.lines & } && { read -r line; kill -INT $!; cat > /dev/null; } < ../$$.lines;"
                  " rm ../$$.lines; wait $!");
        EXPECT_EQ(outcome.status, 1) << outcome.output;
        EXPECT_THAT(outcome.output, testing::HasSubstr(row.says));
        EXPECT_EQ(m_phone.OpenCount(), 0U);
    }
    EXPECT_FALSE(m_local.Has("photo.bin") || m_local.Has("dir/photo.bin"));
    EXPECT_TRUE(m_phone.Exists("dir/photo.bin"));
    EXPECT_FALSE(m_phone.Exists("dir/new/mine.bin"));
}

TEST_F(WfxhostPhoneTest, DemonstrationOnlyReadsFromAnAttachedHandset) {
    m_phone.AddFile("dir/photo.bin", Pattern(120000));
    Expect({{"", 0, "Nothing was written to the handset"}});
    EXPECT_GT(m_phone.CountOf(kRead), 0);
    // Requests that open files for writing, write, make or remove anything.
    for (const char* sRequest : {"4B130500", "4B130600", "4B130800", "4B130900", "4B130A00", "4B130E00"})
        EXPECT_EQ(m_phone.CountOf(sRequest), 0) << sRequest;
    for (const Bytes& request : m_phone.phone.Requests())
        EXPECT_TRUE(!handset::BeginsWith(request, Hex(kOpenFile)) || ValueAt(request, 4) == 0);
}

TEST_F(WfxhostPhoneTest, LinksFoldersAndProperties) {
    m_phone.AddFile("dir/my photo.bin", Pattern(1234));
    m_phone.AddFolder("dir/sub");
    Expect({
        {"ln 'dir/my photo.bin' dir/sub/p", 0, ""},
        {"ln dir/sub 's.lnk'", 0, ""},
        {"ln dir/sub s", 1, "\"/s.lnk\" exists already"},
        {"ln dir/none x", 1, "no file or folder"},
        {"ln dir none/x", 1, "the phone has no folder \"/none\""},
        {"ln dir 'a\"b'", 1, "double quote"},
        {"cd dir/sub", 0, "/dir/sub\n"},
        {"cd dir/none", 1, "/dir/none: the phone refused it: no such file or folder (2)\n"},
        {"props dir/sub/p.lnk", 0, "Link to:\t\t/dir/my photo.bin\nType:\t\t<FILE> [81B6]\nSize:\t\t1 234\n"},
        {"props /", 0, "Type:\t\t<DIR>"},
        {"props dir/none", 1, "no file or folder"},
        {"props dir --json", 0,
         "{\"path\": \"/dir\", \"utf8\": true, \"properties\": {\"Name\": \"dir\", \"Type\": \"<DIR>"},
        {"props", 2, "usage: wfxhost props PATH"},
    });
    EXPECT_EQ(m_phone.Content("dir/sub/p.lnk"), Pattern(1234));
    EXPECT_TRUE(m_phone.Exists("s.lnk"));
    m_phone.Misbehave(Action::Refuse, "4B130600", -1, 13);
    Expect({{"ln dir other", 1, "/other.lnk to /dir: the phone refused it: permission denied (13)\n"}});
}

TEST_F(WfxhostTest, DemonstrationStartsASimulatedHandset) {
    m_settings = "QUILLET_DEVICE_ROOT=/nonexistent TMPDIR='" + m_local.Path() + "'";
    Expect({{"", 0, "SIMULATED"}, {"", 0, "Compared: all 250000 bytes are the same"}});
    EXPECT_TRUE(std::filesystem::is_empty(m_local.Path()));
}

/// A plug-in that is not quillet.
class WfxhostOddPluginTest : public ProgramTest {
protected:
    WfxhostOddPluginTest() : ProgramTest(QUILLET_WFXHOST " --plugin " QUILLET_ODD_PLUGIN) {}
};

TEST_F(WfxhostOddPluginTest, FailuresShowThePluginsReasonOrExplainItsResult) {
    m_local.Write("mine", {1});
    const struct {
        const char* settings;
        const char* arguments;
        const char* says;
    } kRows[] = {
        {"ODD_RESULT=2", "get file", "wfxhost: the phone has no file \"/file\"\n"},
        {"ODD_RESULT=3", "get file", "wfxhost: \"/file\": it could not be read\n"},
        {"ODD_RESULT=4", "get file", "wfxhost: the phone did not send the whole file \"/file\"\n"},
        {"ODD_RESULT=6", "cat file", "wfxhost: \"/file\": this plug-in cannot copy that file\n"},
        {"ODD_RESULT=99", "put mine", "wfxhost: \"/mine\": the plug-in gave no reason\n"},
        {"ODD_LINE='get: /file: full\x1B (28)'", "get file", "wfxhost: get: /file: full\\x1B (28)\n"},
        {"ODD_LINE='put: no'", "put mine", "wfxhost: put: no\n"},
        {"ODD_LINE='delete: no'", "rm file", "wfxhost: delete: no\n"},
        {"", "rm file", "wfxhost: the phone did not delete \"/file\"\n"},
        {"ODD_LINE='no'", "get -r / all", "not copied: no\n"},
        {"", "rmdir endless", "wfxhost: the folder \"/endless\" is not empty\n"},
        {"", "mkdir new", "wfxhost: this plug-in cannot make folders\n"},
    };
    for (const auto& row : kRows) {
        m_settings = row.settings;
        const ProgramOutcome outcome = Run(row.arguments);
        EXPECT_EQ(outcome.status, 1) << row.arguments;
        EXPECT_THAT(outcome.output, testing::HasSubstr(row.says));
    }
}

TEST_F(WfxhostOddPluginTest, EndlessFoldersAndInvalidNamesAreSkipped) {
    Expect({
        {"find endless -maxdepth 1", 0, "/endless\n/endless/endless\n"},
        {"du", 1, "its folders are nested too deep"},
        {"rm -r endless", 1, "its folders are nested too deep; nothing was deleted"},
        {"find impossible", 1, "\"../endless\" is not a valid name"},
        {"rm -r impossible", 1, "is not a valid name; nothing was deleted"},
        {"rm -r 'impossible/*'", 1, "nothing matches it as a pattern"},
    });
}

} // namespace
