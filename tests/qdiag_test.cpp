// qdiag as its users run it: the program, the library's file and a simulated handset.
#include <fstream>
#include <regex>
#include <thread>

#include "eventually.h"
#include "handset/console.h"
#include "handset/state.h"
#include "handset/unsolicited.h"
#include "program_fixture.h"

namespace {

class QdiagTest : public ProgramTest {
protected:
    QdiagTest() : ProgramTest(QUILLET_QDIAG) {}

    void WriteText(const std::string& sName, const std::string& sText) const {
        std::ofstream(m_local.Path(sName), std::ios::binary) << sText;
    }
};

class QdiagPhoneTest : public QdiagTest {
protected:
    void SetItem(uint16_t iItem, const Bytes& value) {
        m_phone.phone.WithState([&](handset::State& state) { state.nv.items[iItem].values[0] = value; });
    }
    /// Returns an item's value without trailing zeros.
    Bytes Item(uint16_t iItem) {
        Bytes value;
        m_phone.phone.WithState([&](handset::State& state) { value = state.nv.items[iItem].values[0]; });
        while (!value.empty() && value.back() == 0)
            value.pop_back();
        return value;
    }

    PluggedPhone m_phone;
};

TEST_F(QdiagTest, ExitStatusOfWrongUsageAndFailures) {
    m_settings = "QUILLET_DEVICE_ROOT=/nonexistent";
    WriteText("cut.txt", "71 0102");
    WriteText("wrong.txt", "# a comment\r\n\r\n71 01\r\n72 012\r\n");
    WriteText("twice.txt", "71 01\n71 02\n");
    WriteText("junk.log",
              std::string("\0\xFF,,SYNC REC--listener--: 0\n", 28) + std::string(60000, ',') + "\n");
    Expect({
        {"--help", 0, "Usage: qdiag"},
        {"", 2, "no command"},
        {"dance", 2, "unknown command \"dance\""},
        {"nv read", 2, "usage: qdiag nv read ITEM [LENGTH]"},
        {"nv read 65536", 2, "NV item: \"65536\" is not a number from 0 to 65535"},
        {"nv read 71 129", 2, "length: \"129\" is not a number"},
        {"nv read -- -1", 2, "is not a number"},
        {"nv write 71 123", 2, "is not 1 to 128 bytes in hex"},
        {"nv backup x --items 9-8", 2, "ends before it begins"},
        {"nv backup ''", 2, "an empty argument"},
        {"nv restore x --read-only 1,,2", 2, "--read-only: \"\" is not a number"},
        {"log 0x12345", 2, "log code: \"0x12345\" is not a number"},
        {"info --count 1", 2, "info has no option --count"},
        {"info --loud", 2, "unknown option"},
        {"info --port", 2, "--port needs a value"},
        {"nv restore none.txt", 1, "cannot be read"},
        {"nv restore cut.txt", 1, "line 1: the line is incomplete; the file was truncated"},
        {"nv restore wrong.txt", 1, "line 4: expected an item number and 1 to 128 bytes in hex"},
        {"nv restore twice.txt", 1, "line 2: NV item 71 occurs twice"},
        {"replay none.log", 1, "cannot be read"},
        {"replay junk.log", 1, "no packet from a phone is recorded"},
        {"info", 3, "no handset answers on any serial port"},
        {"info --port 7", 3, "the list of serial ports cannot be read"},
    });
}

TEST_F(QdiagPhoneTest, FindsThePhoneAndReportsASilentOne) {
    Expect({
        {"ports", 0, "COM1    a handset answers\nCOM51   cannot be opened\n"},
        {"info", 0, "port                  COM1\n"},
        {"info --port 1", 0, "esn                   0x80345678\n"},
        {"info --port 51", 3, "COM51 cannot be opened"},
        {"info --port 7", 3, "there is no port COM7"},
    });
    m_phone.Misbehave(Action::Ignore, "", -1);
    Expect({{"info", 3, "no handset answers"},
            {"info --port 1", 3, "no handset answers on COM1"},
            {"ports", 0, "COM1    no answer"}});
}

TEST_F(QdiagPhoneTest, HostileNameIsEscapedInJsonAndOnTheTerminal) {
    m_phone.Answer(
        "7C", Packet("7C 00 00 00 01 00 00 00 02 00 00 00", {}, std::string("a\"\\\x1B[2J\xFF\0m\n", 11)));
    const ProgramOutcome json = Run("info --json");
    EXPECT_EQ(json.status, 0);
    const std::string sText = R"--("([ !#-\[\]-~]|\\["\\]|\\u[0-9A-F]{4})*")--";
    const std::string sMember = R"(\s*"[a-z_]+": ()" + sText + "|[0-9]+|null)";
    EXPECT_TRUE(std::regex_match(json.output, std::regex("\\{" + sMember + "(," + sMember + ")*\\s*\\}\\s*")))
        << json.output;
    EXPECT_THAT(json.output, testing::HasSubstr(R"("software": "a\"\\\u001B[2J\u00FF",)"));
    Expect({{"info", 0, "a\"\\\\x1B[2J\xFF\n"}});
}

TEST_F(QdiagPhoneTest, UnreportedFactsAreNullAndFailTheCommand) {
    m_phone.Misbehave(Action::Ignore, "7C", -1);
    m_phone.Answer("4B131300", Packet("4B 13 13 00", {13, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    Expect({{"--timeout 200 info --json", 1, "\"model_name\": null,"},
            {"--timeout 200 info", 1, "no usable response to the request for the build within 0.2 s"}});
}

TEST_F(QdiagPhoneTest, ReadsAndWritesItems) {
    Expect({
        {"nv read 71 8", 0, "7175696C6C657400\n"},
        {"nv write 71 '01 02ff'", 0, "NV item 71 written: 3 bytes, then zeros"},
        {"nv read 0x47 4", 0, "0102FF00\n"},
        {"nv read 9", 1, "the phone refuses to read NV item 9 (status 5)"},
        {"nv write 0 01", 1, "the phone refused to write NV item 0 (status 7, read-only)"},
    });
    EXPECT_EQ(Item(71), Hex("01 02 FF"));
    m_phone.Misbehave(Action::Ignore, "26", -1);
    Expect(
        {{"nv read 71 --timeout 100", 1, "no usable response to the request for NV item 71 within 0.1 s"}});
}

TEST_F(QdiagPhoneTest, BackupChangeRestore) {
    for (uint16_t i = 100; i < 140; ++i)
        SetItem(i, {static_cast<uint8_t>(i), 1});
    Expect({
        {"nv backup items.txt --items 0-200", 0, "reading: 100 %  201 of 201\n43 items kept in items.txt"},
        {"nv backup items.txt --items 0-1", 1, "already exists"},
        {"nv restore items.txt", 0, "the phone holds all 43 items of the file already"},
    });
    for (uint16_t i = 100; i < 130; ++i)
        SetItem(i, {0xEE});
    m_phone.phone.ClearRequests();
    Expect({
        {"nv restore items.txt < /dev/null", 1, "not confirmed: nothing was written"},
        {"nv restore items.txt < /dev/null", 1, "NV item 100\n  handset  EE\n  file     64 01\n"},
    });
    EXPECT_EQ(m_phone.CountOf("4B300000"), 0);
    Expect({{"nv restore items.txt --yes", 0, "30 of 43 items differ\nrestored and read back"}});
    EXPECT_EQ(m_phone.CountOf("4B300000"), 3); // a batch holds ten items
    EXPECT_EQ(m_phone.CountOf("27"), 0);
    for (uint16_t i = 100; i < 140; ++i)
        EXPECT_EQ(Item(i), (Bytes{static_cast<uint8_t>(i), 1}));
}

TEST_F(QdiagPhoneTest, RestoreReportsRefusedItems) {
    WriteText("items.txt", "0 01\n71 02\n300 03\n");
    Expect(
        {{"nv restore items.txt < items.txt", 1, "not confirmed"},
         {"nv restore items.txt --yes", 1,
          "items were not restored: the phone refused to write NV item 0 (status 7"},
         {"nv restore items.txt --yes --read-only 5,0", 0, "NV item 0 may be read-only and stays as it is"}});
    EXPECT_EQ(Item(71), Bytes{2});
    EXPECT_EQ(Item(300), Bytes{3});
    SetItem(71, {9});
    m_phone.Misbehave(Action::Ignore, "4B300000", -1);
    Expect({{"nv restore items.txt --yes --read-only 0 --timeout 200", 1,
             "NV item 71 does NOT hold the file's value"}});
}

TEST_F(QdiagPhoneTest, BackupReportsMissingItems) {
    m_local.Write("taken.part", {'x'});
    Expect({{"nv backup taken --items 71", 1, "already exists"}});
    EXPECT_EQ(m_local.Read("taken.part"), Bytes{'x'});
    m_phone.Misbehave(Action::Ignore, "264700", -1);
    Expect({{"nv backup items.txt --items 70-72 --timeout 100", 1,
             "lacks 1 items because the phone did not answer the requests for them; the first is item 71"}});
    const Bytes content = m_local.Read("items.txt");
    EXPECT_THAT(std::string(content.begin(), content.end()),
                testing::HasSubstr("# no response to the request for item 71"));
    m_phone.phone.Behave();
    m_phone.Misbehave(Action::Unplug, "26", 1, 0, 20);
    Expect({{"nv backup more.txt --timeout 300", 1, "the handset stopped answering; the backup failed"}});
    EXPECT_FALSE(m_local.Has("more.txt"));
    m_phone.phone.Behave();
    m_phone.phone.Replug();
    m_settings = "ulimit -f 8 &&";
    for (uint16_t i = 100; i < 200; ++i)
        SetItem(i, {1});
    Expect({{"nv backup more.txt --items 0-300", 1, "could not be written"}});
    EXPECT_EQ(CountIn(m_local.Path().c_str()), 2U);
}

TEST_F(QdiagPhoneTest, LogShowsEnabledPacketsAndRestoresTheMasks) {
    const Bytes maskBefore = {0x00, 0x04};
    m_phone.phone.WithState([&](handset::State& state) { state.traffic.logs[1] = maskBefore; });
    handset::Message message;
    message.subsystem = 5;
    message.format = "value %d\x1B%s";
    message.arguments = {42};
    handset::Console console(m_phone.phone);
    bool bSent = false;
    std::thread sender([&] {
        // Each packet is sent as soon as the program has enabled it.
        bSent = Eventually([&] { return console.Run("log 0x1098 01 02 03") == "ok\n"; }) &&
                Eventually([&] { return m_phone.phone.EmitMessage(message); }) &&
                Eventually([&] { return console.Run("event 256") == "ok\n"; });
    });
    const ProgramOutcome outcome = Run("log 0x1098 0x7001 --messages 5 --events --count 3 --hex");
    sender.join();
    EXPECT_TRUE(bSent);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    for (const char* sText : {"Log Message 0x1098 detected, length 15 bytes\n", "10 00 0F 00 0F 00 98 10",
                              "Debug Msg: 5.8 - phone.c-1 value 42\\x1B",
                              "Event 256: EVENT_BAND_CLASS_CHANGE", "packets shown: 3"})
        EXPECT_THAT(outcome.output, testing::HasSubstr(sText));
    m_phone.phone.WithState([&](handset::State& state) {
        EXPECT_EQ(state.traffic.logs[1][1], 4);
        EXPECT_FALSE(state.traffic.SendsLog(0x1098));
        EXPECT_FALSE(state.traffic.SendsLog(0x7001));
        EXPECT_FALSE(state.traffic.SendsMessage(5, 8));
        EXPECT_FALSE(state.traffic.events);
    });
}

TEST_F(QdiagPhoneTest, LogReportsWhyItEnds) {
    Expect({{"log 0x0001", 1, "the phone has no log code 0x1"}, {"log --seconds 0", 0, "packets shown: 0"}});
    m_phone.Misbehave(Action::Ignore, "73", -1);
    Expect({{"log 0x1098 --timeout 100", 1, "no usable response to the request for its log codes"}});
    m_phone.Misbehave(Action::Unplug, "7B", 1, 0, 2); // skips the two checks at the start
    Expect({{"log", 1, "the handset stopped answering"}});
}

TEST_F(QdiagPhoneTest, InterruptEndsALogCleanly) {
    std::thread sender([&] { Eventually([&] { return m_phone.phone.EmitLog(0x1098, {}); }); });
    // The first line shows that the log is running.
    const ProgramOutcome outcome =
        Shell("cd '" + m_local.Path() +
              "' && mkfifo lines && { " QUILLET_QDIAG
              " log 0x1098 > lines & } && { read -r line; kill -INT $!; cat > rest; } < lines; wait $!");
    sender.join();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(outcome.output, testing::HasSubstr("packets shown: 1"));
    m_phone.phone.WithState([](handset::State& state) { EXPECT_FALSE(state.traffic.SendsLog(0x1098)); });
}

TEST_F(QdiagPhoneTest, ReplaysARecordedSession) {
    // The marker file makes every program that uses the library record. A replay must not overwrite the file
    // it reads.
    WriteText("QMSL_auto_start_log.txt", "");
    std::thread sender([&] { Eventually([&] { return m_phone.phone.EmitLog(0x1098, {7}); }); });
    Expect({{"log 0x1098 --count 1", 0, "packets shown: 1"}});
    sender.join();
    for (int i = 0; i < 2; ++i)
        Expect({{"replay QMSL_Log.txt", 0, "Log Message 0x1098 detected, length 13 bytes\n"},
                {"replay QMSL_Log.txt --hex", 0, "73 00 00 00 01 00 00 00 00 00 00 00 "}});
}

} // namespace
