// The command-line host's copies of whole folders, and its listing for programs.
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
    /// Refuses requests for good.
    void Refuse(const Bytes& prefix) {
        m_phone.phone.Misbehave({.action = Action::Refuse, .prefix = prefix, .times = -1, .value = 13});
    }

    PluggedPhone m_phone;
};

TEST_F(WfxhostTreeTest, ATreeComesBackAsItWas) {
    MakeTree();
    Expect({
        {"get -r tree", 0, "\"/tree/loop.lnk\" is a link to a folder and is not followed"},
        {"get -r /tree/ other", 0, "4 files, 4 folders, 6543 bytes in "},
        {"put -r tree copied", 0, "4 files, 4 folders, 6543 bytes in "},
        {"put -r other/. copied", 0, "4 files, 4 folders, 6543 bytes in "},
        {"get -r copied .", 0, "\"/copied/empty\" is empty, or the phone did not let it be read"},
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

TEST_F(WfxhostTreeTest, WhatFailsIsToldAndTheRestIsCopied) {
    MakeTree();
    m_phone.AddFile("tree/sub/back\\slash", {1});
    Refuse(Packet("4B130200", {0, 0444}, "tree/a.bin"));
    const ProgramOutcome get = Run("get -r tree");
    EXPECT_EQ(get.status, 1);
    EXPECT_THAT(
        get.output,
        testing::AllOf(testing::HasSubstr("did not hand out the whole file \"/tree/a.bin\""),
                       testing::HasSubstr("backslash cannot be told to a plug-in: \"/tree/sub/back\\slash\""),
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
          "b\": is neither file nor folder", "no name with a backslash", "6 of 7 files not copied",
          "make the folder \"/tree2/tree/sub\", with all that it holds",
          "folder \"/tree2/tree/empty\", with all"})
        EXPECT_THAT(put.output, testing::HasSubstr(line));
    EXPECT_TRUE(m_phone.Exists("tree2/tree/z.txt"));
}

TEST_F(WfxhostTreeTest, ATreeWithoutAHandsetStops) {
    MakeTree();
    m_phone.Misbehave(Action::Unplug, "4B130400", 1, 0, 2);
    Expect({{"get -r tree", 1, "stopped, as others would fail as well; "}});
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
    std::string expected;
    for (const int i : {0, 4, 2, 1, 3}) { // in the order of their bytes, "folder" behind the first
        expected += i == 4 ? "" : handset::ToHex(Bytes(kNames[i].begin(), kNames[i].end())) + " file\n";
        expected += i == 0 ? "66 6F 6C 64 65 72 folder\n7A file\n" : "";
    }
    const std::string listing = "cd '" + m_local.Path() + "' && " + m_program + " ls --json ";
    EXPECT_EQ(Shell(listing + "dir | python3 check.py").output, expected);
    EXPECT_EQ(Shell(listing + "none | python3 check.py").output, "");
}

} // namespace
