// Copies of whole folders by the command-line host, and its listings for programs.
#include "program_fixture.h"

namespace {

class WfxhostTreeTest : public ProgramTest {
protected:
    WfxhostTreeTest() : ProgramTest(QUILLET_WFXHOST " --plugin " QUILLET_PLUGIN_FILE) {}

    void MakeTree() {
        m_phone.AddFile("tree/a.bin", Pattern(5000));
        m_phone.AddFile("tree/sub/deep/none", {});
        m_phone.AddFile("tree/sub/g\xC3\xBCn, \x1B[1m.txt", Pattern(1536));
        m_phone.AddFile("tree/sub/\xFF\xFE", Pattern(7));
        m_phone.AddFolder("tree/empty");
        m_phone.AddLink("tree/loop.lnk", "/tree");
    }
    /// Refuses all requests with that prefix.
    void Refuse(const Bytes& prefix) {
        m_phone.phone.Misbehave({.action = Action::Refuse, .prefix = prefix, .times = -1, .value = 13});
    }

    PluggedPhone m_phone;
};

TEST_F(WfxhostTreeTest, TreeRoundTrip) {
    MakeTree();
    Expect({
        {"get -r tree", 0, "\"/tree/loop.lnk\" is a link to a folder and is not followed"},
        {"get -r /tree/ other", 0, "4 files, 4 folders, 6543 bytes in "},
        {"put -r tree copied", 0, "4 files, 4 folders, 6543 bytes in "},
        {"put -r other/. copied", 0, "4 files, 4 folders, 6543 bytes in "},
        {"get -r copied .", 0, "\"/copied/empty\" is empty, or the phone refused to list it"},
        {"get -r copied", 1, "exists already; --force replaces it"},
        {"--force get -r copied", 0, "8 files, 8 folders, 13086 bytes in "},
        {"put -r tree /", 1, "4 of 4 files not copied"},
        {"put -r --force tree /", 0, "4 files, 4 folders, "},
        {"get -r /", 2, "the phone's root has no name"},
        {"get -r / all", 0, "12 files, "},
        {"get -r tree/loop.lnk linked", 0, "4 files, 4 folders, "},
        {"get -r tree/a.bin single", 0, "5000 bytes in "},
        {"get -r tree none/x", 1, "there is no folder \"none\""},
        {"put -r tree none/x", 1, "the phone has no folder \"/none\""},
        {"get tree", 1, "get -r copies folders"},
        {"put tree", 1, "put -r copies folders"},
    });
    const ProgramOutcome difference =
        Shell("cd '" + m_local.Path() +
              "' && for other in other copied/other linked all/tree all/copied/other; do"
              " diff -r tree $other || exit 1; done && rm -r copied/other && diff -r tree copied");
    EXPECT_EQ(difference.status, 0) << difference.output;
    EXPECT_EQ(m_local.Read("all/copied/other/sub/g\xC3\xBCn, \x1B[1m.txt"), Pattern(1536));
    EXPECT_EQ(m_phone.Content("copied/other/sub/\xFF\xFE"), Pattern(7));
    EXPECT_EQ(m_phone.OpenCount(), 0U);
}

TEST_F(WfxhostTreeTest, SeveralSourcesAndPatterns) {
    MakeTree();
    m_phone.AddFile("tree/[x]", Pattern(3));
    m_phone.AddFile("other/a.bin", Pattern(4));
    m_local.Write("b.bin", Pattern(11));
    m_local.Write(".hidden.bin", Pattern(12));
    Expect({
        {"get 'tree/*.bin' 'tree/sub/g*' .", 0, "2 files, 0 folders, 6536 bytes in "},
        {"get 'tree/[x]'", 0, "3 bytes in "}, // the exact name
        {"get 'tree/?.bin' none other/a.bin . -f", 1, "the phone has no file \"/none\""},
        {"get tree/a.bin other/a.bin . -f", 1, "\"/other/a.bin\": another source has the same name here"},
        {"get tree/a.bin other/a.bin none", 1, "there is no folder \"none\"; several sources need one"},
        {"get 'tree/*.none'", 1, "no file \"/tree/*.none\", and nothing matches it as a pattern"},
        {"get 'tree/*' -qr .", 1, "exists already"},
        {"put '*.bin' /other -f", 0, "2 files, 0 folders, 5011 bytes in "},
        {"put '*.none' other", 1, "nothing matches it as a pattern"},
        {"put b.bin none.bin other", 1, "there is no file \"none.bin\""},
        {"put b.bin a.bin none", 1, "the phone has no folder \"/none\"; several sources need one"},
        {"mv 'other/*.bin' tree/sub", 0, ""},
        {"mv tree/sub/b.bin /tree/a.bin none", 1, "several sources need one"},
    });
    EXPECT_EQ(m_local.Read("g\xC3\xBCn, \x1B[1m.txt"), Pattern(1536));
    EXPECT_EQ(m_phone.Content("tree/sub/a.bin"), Pattern(5000));
    EXPECT_EQ(m_phone.Content("tree/sub/b.bin"), Pattern(11));
    EXPECT_FALSE(m_phone.Exists("tree/sub/.hidden.bin"));
}

TEST_F(WfxhostTreeTest, ThousandsOfSourcesCostOneListing) {
    constexpr int kCount = 3000;
    for (int i = 0; i < kCount; ++i)
        m_phone.AddFile("many/" + std::to_string(i), {1});
    m_phone.phone.ClearRequests();
    Expect({{"rm -n $(seq -f many/%.0f 0 2999)", 0, "would delete \"/many/2999\""}});
    EXPECT_LT(m_phone.CountOf(kReadFolder), 2 * kCount);
    EXPECT_EQ(m_phone.CountOf(kUnlink), 0);
}

TEST_F(WfxhostTreeTest, UpdateCopiesOnlyWhatChanged) {
    MakeTree();
    const std::string kOld = "touch -d 2001-01-01 ";
    Expect({
        {"get -r tree -n", 0, "5 files, 4 folders, 6548 bytes would be copied"},
        {"get -ru tree", 0, "4 files, 4 folders, 0 up to date, "},
        {"get --update --recursive tree; " + kOld + "tree/a.bin; echo x >> tree/sub/deep/none", 0,
         "0 files, 4 folders, 4 up to date, 0 bytes"},
        {"get -nru tree", 0, "would copy \"/tree/sub/deep/none\" to \"tree/sub/deep/none\", 0 bytes"},
        {"get tree/a.bin tree/a.bin -n", 1, "\"tree/a.bin\" exists already"},
        {"get -ru tree", 0, "2 files, 4 folders, 2 up to date, 5000 bytes"},
        {"put -un tree/a.bin tree; " + kOld + "tree/a.bin", 0, ""},
        {"put -u tree/a.bin tree", 0, "0 files, 0 folders, 1 up to date"},
        {"put -ru tree /; echo x >> tree/a.bin", 0, " up to date"},
    });
    m_phone.phone.ClearRequests();
    Expect({{"put -run tree /", 0, "would copy \"tree/a.bin\" to \"/tree/a.bin\", 5002 bytes"},
            {"put -n tree/a.bin new.bin", 0, "1 file, 0 folders, 5002 bytes would be copied"}});
    EXPECT_EQ(m_phone.CountOf(kOpenFile) + m_phone.CountOf("4B130900"), 0);
    Expect({{"put -ru tree /", 0, "5002 bytes in "}});
    EXPECT_EQ(m_phone.Content("tree/a.bin").size(), 5002U);
    EXPECT_TRUE(m_local.Read("tree/sub/deep/none").empty());
}

TEST_F(WfxhostTreeTest, RemovesTreesAndNothingElse) {
    MakeTree();
    m_phone.AddFile("outside/kept", {1});
    m_phone.AddLink("tree/out.lnk", "/outside");
    m_phone.AddFile("tree2/refused/a", {1});
    m_phone.AddFile("tree2/b", {1});
    Refuse(Packet("4B130800", {}, "tree2/refused/a"));
    Expect({
        {"rm tree", 1, "is a folder; rmdir removes empty folders, rm -r"},
        {"rm -r /", 1, "root folder"},
        {"rm -rn tree", 0, "would delete \"/tree/sub/deep/none\"\n"},
        {"rm 'no*'", 1, "no file or folder \"/no*\", and nothing matches it"},
        {"rm -f none 'no*'", 0, ""},
        {"rm -r tree/sub tree tree/a.bin none", 1,
         "not deleted: the phone has no file or folder \"/none\"\n"},
        {"rm -r tree2", 1,
         "not deleted: delete: /tree2/refused/a: the phone refused it: permission denied (13)\n"},
    });
    EXPECT_FALSE(m_phone.Exists("tree") || m_phone.Exists("tree2/b"));
    EXPECT_TRUE(m_phone.Exists("tree2/refused/a") && m_phone.Exists("outside/kept"));
    EXPECT_EQ(m_phone.OpenCount(), 0U);
}

TEST_F(WfxhostTreeTest, InterruptStopsSearchesAndRemovals) {
    for (int i = 0; i < 9; ++i)
        m_phone.AddFile("tree/" + std::to_string(i) + "/file", {1});
    const struct {
        const char* command;
        std::string request; // Ctrl-C comes with the fourth one
        const char* says;
    } kRows[] = {
        {"find", kOpenFolder, "interrupted: not everything was looked at"},
        {"du", kOpenFolder, "interrupted: not everything was looked at"},
        {"get -r tree", kOpenFolder, "interrupted: nothing was copied"},
        {"rm -r tree", kOpenFolder, "interrupted: nothing was deleted"},
        {"rm -r tree", kUnlink, "stopped, interrupted; not everything was deleted"},
    };
    for (const auto& row : kRows) {
        m_phone.phone.ClearRequests();
        int iLeft = 4;
        m_phone.phone.OnRequest([&](const Bytes& request) {
            pid_t pid = 0;
            if (handset::BeginsWith(request, Hex(row.request)) && --iLeft == 0 &&
                std::ifstream(m_local.Path("pid")) >> pid)
                kill(pid, SIGINT);
        });
        const ProgramOutcome outcome = Shell("cd '" + m_local.Path() + "' && sh -c 'echo $$ > pid; exec " +
                                             m_program + " " + row.command + "'");
        m_phone.phone.OnRequest(nullptr);
        EXPECT_EQ(outcome.status, 1) << row.command;
        EXPECT_THAT(outcome.output, testing::HasSubstr(row.says)) << row.command;
        EXPECT_EQ(m_phone.OpenCount(), 0U) << row.command;
        EXPECT_EQ(m_phone.CountOf(kUnlink), row.request == kUnlink ? 4 : 0) << row.command;
    }
    EXPECT_FALSE(m_local.Has("tree"));
    EXPECT_TRUE(m_phone.Exists("tree/0/file"));
    EXPECT_FALSE(m_phone.Exists("tree/8/file"));
}

TEST_F(WfxhostTreeTest, CompletesCommandsOptionsAndPaths) {
    m_phone.AddFile("dir/my photo.bin", {});
    m_phone.AddFolder("dir/my folder");
    m_phone.AddFile("dir/line\nfeed", {});
    m_local.Write("my file", {});
    std::ofstream(m_local.Path("complete.sh")) << R"(
source <("$1" --completion | sed "s/timeout 0.2/timeout 60/")
shift
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMP_TYPE=9
compopt() { :; }
_wfxhost
printf '%s|' "${COMPREPLY[@]}"
)";
    const struct {
        const char* words;
        const char* completions;
    } kRows[] = {
        {"m", "mkdir|mv|"},
        {"rm --re", "--recursive|"},
        {"--plugin x find -ty", "-type|"},
        {"find / -type ''", "f|d|"},
        {"put my", "my file|"},
        {"get x my", "my file|"},
        {"ls dir/m", "dir/my folder/|dir/my photo.bin|"},
        {"put x /d", "/dir/|"},
        {"rm a b 'dir/my\\ p'", "dir/my photo.bin|"},
        {"get dir/line", "|"},
        {"--plugin /nonexistent ls dir/m", "|"}, // which the listing gets too
    };
    for (const auto& row : kRows)
        EXPECT_EQ(Shell("cd '" + m_local.Path() +
                        "' && bash complete.sh " QUILLET_WFXHOST " " QUILLET_WFXHOST " " + row.words)
                      .output,
                  row.completions)
            << row.words;
}

TEST_F(WfxhostTreeTest, FailuresAreReportedAndTheRestIsCopied) {
    MakeTree();
    m_phone.AddFile("tree/sub/back\\slash", {1});
    Refuse(Packet("4B130200", {0, 0444}, "tree/a.bin"));
    const ProgramOutcome get = Run("get -r tree");
    EXPECT_EQ(get.status, 1);
    EXPECT_THAT(get.output,
                testing::AllOf(
                    testing::HasSubstr("/tree/a.bin"),
                    testing::HasSubstr("backslash cannot be passed to a plug-in: \"/tree/sub/back\\slash\""),
                    testing::HasSubstr("2 of 6 files not copied")));
    EXPECT_FALSE(m_local.Has("tree/a.bin"));
    EXPECT_EQ(m_local.Read("tree/sub/\xFF\xFE"), Pattern(7));

    Refuse(Packet("4B130900 FF01", {}, "tree2/tree/sub"));
    m_phone.AddFile("tree2/tree/empty", {1});
    const ProgramOutcome put = Shell("cd '" + m_local.Path() +
                                     "/tree' && mkfifo pipe && ln -s .. up && ln -s b b &&"
                                     " touch 'a\\b' z.txt && " +
                                     m_program + " put -r . /tree2/../tree2");
    EXPECT_EQ(put.status, 1);
    for (const char* line :
         {"up\" is a link to a folder and is not followed", "pipe\": is neither file nor folder",
          "b\": is neither file nor folder", "b\": a name with a backslash cannot be passed",
          "6 of 7 files not copied", "/tree2/tree/sub", "/tree2/tree/empty", ", and everything in it"})
        EXPECT_THAT(put.output, testing::HasSubstr(line));
    EXPECT_TRUE(m_phone.Exists("tree2/tree/z.txt"));
}

TEST_F(WfxhostTreeTest, LostHandsetStopsATree) {
    MakeTree();
    m_phone.Misbehave(Action::Unplug, "4B130400", 1, 0, 2);
    Expect({{"get -r tree", 1, "stopped, as the other files would fail as well; "}});
    EXPECT_FALSE(m_local.Has("tree/sub/\xFF\xFE"));
}

TEST_F(WfxhostTreeTest, ListsForPrograms) {
    const std::string kNames[] = {"\"q\\\" \x1B\x7F", "\xC2\x85\xF0\x9F\x98\x80", "\xC0\xAF", "\xED\xA0\x80x",
                                  "z"};
    for (const std::string& name : kNames)
        m_phone.AddFile("dir/" + name, Pattern(3));
    m_phone.AddFolder("dir/folder");
    m_phone.AddFolder("none");
    std::ofstream(m_local.Path("check.py")) << R"(
import json, re, sys
entries = json.loads(sys.stdin.buffer.read().decode("utf-8"))
for e in entries:
    assert set(e) == {"name", "utf8", "type", "size", "modified", "attributes"}, e
    assert re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", e["modified"]), e
    assert (e["type"], e["size"], e["attributes"]) in [("file", 3, 0), ("folder", None, 16)], e
    print(e["name"].encode("utf-8" if e["utf8"] else "latin-1").hex(" ").upper(), e["type"])
)";
    const std::string kOdd = "line\nfeed \"\xFF\x80";
    m_phone.AddFile("odd/" + kOdd, {1});
    std::ofstream(m_local.Path("names.py")) << R"(
import json, sys
def names(value):
    if isinstance(value, dict) and "utf8" in value:
        name = next(value[key] for key in ("name", "path", "phone") if key in value)
        yield name.encode("utf-8" if value["utf8"] else "latin-1").split(b"/")[-1].hex(" ").upper()
    for part in value.values() if isinstance(value, dict) else value if isinstance(value, list) else ():
        yield from names(part)
print(*names(json.loads(sys.stdin.buffer.read().decode("utf-8"))), sep="\n")
)";
    for (const std::string arguments :
         {"ls --json odd", "find --json -type f odd", "du -a --json odd", "get -r --json odd copy",
          "get -n --json 'odd/*'", "put -r --json copy odd", "cd --json odd",
          "props --json \"odd/$(printf 'line\\nfeed \"\\377\\200')\""})
        EXPECT_THAT(Run(arguments + " | python3 names.py").output,
                    testing::HasSubstr(arguments[0] == 'c' ? "6F 64 64\n"
                                                           : handset::ToHex(Bytes(kOdd.begin(), kOdd.end()))))
            << arguments;
    std::string expected;
    for (const int i : {0, 4, 2, 1, 3}) { // in the order of their bytes, "folder" after the first
        expected += i == 4 ? "" : handset::ToHex(Bytes(kNames[i].begin(), kNames[i].end())) + " file\n";
        expected += i == 0 ? "66 6F 6C 64 65 72 folder\n7A file\n" : "";
    }
    const std::string listing = "cd '" + m_local.Path() + "' && " + m_program + " ls --json ";
    EXPECT_EQ(Shell(listing + "dir | python3 check.py").output, expected);
    EXPECT_EQ(Shell(listing + "none | python3 check.py").output, "");
}

} // namespace
