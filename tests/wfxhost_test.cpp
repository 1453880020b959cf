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

TEST_F(WfxhostTest, WrongUsageAndMissingThingsHaveTheirOwnStatus) {
    m_settings = "QUILLET_DEVICE_ROOT=/nonexistent";
    Expect({
        {"--help", 0, "Usage: wfxhost"},
        {"dance", 2, "unknown command \"dance\""},
        {"ls / extra", 2, "usage: wfxhost ls [PATH]"},
        {"get", 2, "usage: wfxhost get PHONE [LOCAL]"},
        {"rm ''", 2, "an empty argument"},
        {"--loud ls", 2, "unknown option"},
        {"--force ls", 2, "ls has no option --force"},
        {"--plugin", 2, "--plugin needs a value (FILE)"},
        {"--plugin /dev/null ls", 1, "cannot load the plug-in /dev/null"},
        {"ls", 3, "no handset answers"},
        {"put " QUILLET_PLUGIN_FILE, 3, "no handset answers"},
    });
}

TEST_F(WfxhostPhoneTest, ASilentHandsetIsNoHandset) {
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
    });
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
        {"rm 'kept\\file'", 1, "a name with a backslash cannot be told to a plug-in"},
    });
    EXPECT_TRUE(m_phone.Exists("kept/file")); // which some other name must not lead to
    EXPECT_FALSE(m_phone.Exists("new"));
    EXPECT_FALSE(m_phone.Exists("b.txt"));
}

TEST_F(WfxhostPhoneTest, RefusalsOfThePhoneAreFailures) {
    m_phone.AddFile("kept.txt", Pattern(9000));
    m_local.Write("mine.bin", Pattern(9000));
    for (const char* sRequest : {"4B130800", "4B130900", "4B130200"})
        m_phone.Misbehave(Action::Refuse, sRequest, -1, 13);
    Expect({
        {"rm kept.txt", 1, "did not delete"},
        {"mkdir new", 1, "refused to make the folder"},
        {"get kept.txt", 1, "did not hand out the whole file"},
        {"put mine.bin", 1, "did not take the file"},
    });
}

TEST_F(WfxhostPhoneTest, AListingThatBreaksOffProvesNothing) {
    m_phone.AddFile("dir/kept.txt", Pattern(10));
    m_phone.AddFile("kept.txt", Pattern(10));
    m_phone.Misbehave(Action::Refuse, "4B130800", -1, 13);
    m_phone.Misbehave(Action::Unplug, "4B130B00", 1, 0, 2); // the folder is looked through before and after
    Expect({{"rm kept.txt", 1, "is not known"}});
    m_phone.phone.Behave();
    m_phone.phone.Replug();
    m_phone.Misbehave(Action::Unplug, "4B130B00", 1, 0, 1);
    Expect({{"get -r dir", 1, "the handset stopped answering: nothing was copied"}});
}

TEST_F(WfxhostPhoneTest, OutputThatCannotBeWrittenIsNoSuccess) {
    m_phone.AddFile("kept.txt", Pattern(10));
    Expect({{"ls --json / > /dev/full", 1, "the output could not be written"}});
}

TEST_F(WfxhostPhoneTest, AHandsetThatVanishesDuringACopyFailsIt) {
    m_phone.AddFile("photo.bin", Pattern(100000));
    m_phone.Misbehave(Action::Unplug, "4B130400", 1, 0, 10);
    Expect({{"get photo.bin", 1, "the handset stopped answering"}});
}

TEST_F(WfxhostPhoneTest, InterruptStopsACopyInOrder) {
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
        // The first progress line tells that the copy runs.
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

TEST_F(WfxhostPhoneTest, DemonstrationLeavesNothingBehind) {
    m_phone.AddFile("dir/photo.bin", Pattern(120000));
    Lines before, after;
    const auto list = [this](Lines& names) {
        m_phone.phone.WithFiles([&](handset::FileSystem& files) {
            for (const auto& item : files.List())
                names.push_back(item.path);
        });
    };
    list(before);
    Expect({{"", 0, "Everything worked."}});
    list(after);
    EXPECT_EQ(before, after);
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
        {"cd dir/none", 1, "the phone has no folder \"/dir/none\""},
        {"props dir/sub/p.lnk", 0, "Link to:\t\t/dir/my photo.bin\nType:\t\t<FILE> [81B6]\nSize:\t\t1 234\n"},
        {"props /", 0, "Type:\t\t<DIR>"},
        {"props dir/none", 1, "no file or folder"},
        {"props", 2, "usage: wfxhost props PATH"},
    });
    EXPECT_EQ(m_phone.Content("dir/sub/p.lnk"), Pattern(1234));
    EXPECT_TRUE(m_phone.Exists("s.lnk"));
    m_phone.Misbehave(Action::Refuse, "4B130600", -1, 13);
    Expect({{"ln dir other", 1, "did not make the link \"/other.lnk\""}});
}

TEST_F(WfxhostTest, DemonstrationStartsASimulatedHandset) {
    m_settings = "QUILLET_DEVICE_ROOT=/nonexistent TMPDIR='" + m_local.Path() + "'";
    Expect({{"", 0, "SIMULATED"}});
    EXPECT_TRUE(std::filesystem::is_empty(m_local.Path()));
}

} // namespace
