// The simulated handset itself, in what the other tests build on: framing, the file system's rules, answers
// over its line, misbehaviour, and the device folder.
#include "handset/handset.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "handset/device_root.h"
#include "handset/file_system.h"
#include "handset/framing.h"

namespace handset {
namespace {

namespace fs = std::filesystem;

Bytes Hex(const std::string& text) {
    Bytes bytes;
    EXPECT_TRUE(FromHex(text, bytes)) << text;
    return bytes;
}

std::string HexOf(const std::string& text) {
    return ToHex(Bytes(text.begin(), text.end()));
}

/// The frames of these packets, one after the other, as hex.
std::string Wire(const std::vector<std::string>& packets) {
    Bytes wire;
    for (const std::string& packet : packets)
        for (const uint8_t byte : Frame(Hex(packet)))
            wire.push_back(byte);
    return ToHex(wire);
}

/// A client with nothing of the product in it.
class Client {
public:
    explicit Client(const std::string& tty) : m_tty(open(tty.c_str(), O_RDWR | O_NOCTTY)) {}
    ~Client() { close(m_tty); }

    void Write(const Bytes& wire) {
        EXPECT_EQ(write(m_tty, wire.data(), wire.size()), static_cast<ssize_t>(wire.size()));
    }
    /// The next `count` bytes as hex; fewer when the line ends or stays silent for ten seconds.
    std::string Read(size_t count) {
        Bytes bytes;
        uint8_t byte = 0;
        for (pollfd wait = {m_tty, POLLIN, 0};
             bytes.size() < count && poll(&wait, 1, 10000) > 0 && read(m_tty, &byte, 1) == 1;)
            bytes.push_back(byte);
        return ToHex(bytes);
    }
    /// Sends a packet and gives the next frame's packet as hex.
    std::string Exchange(const std::string& request) {
        Write(Frame(Hex(request)));
        return Receive();
    }
    std::string Receive() {
        for (std::string byte = Read(1); !byte.empty(); byte = Read(1)) {
            const Bytes wire = Hex(byte);
            size_t used = 0;
            if (const auto packet = m_deframer.Take(wire.data(), 1, used))
                return ToHex(*packet);
        }
        return "nothing";
    }

private:
    int m_tty;
    Deframer m_deframer;
};

TEST(HandsetFraming, FramesAreThoseOfTheWire) {
    const std::pair<const char*, const char*> vectors[] = {
        {"00", "00 78 F0 7E"},
        {"7B 00 01 02 03 04 05 06 07 08 09", "7B 00 01 02 03 04 05 06 07 08 09 9D 5F 7E"},
        {"4B 13 00 00", "4B 13 00 00 8D 40 7E"},
        {"7E 7D", "7D 5E 7D 5D F1 CD 7E"},
    };
    for (const auto& [packet, wire] : vectors)
        EXPECT_EQ(ToHex(Frame(Hex(packet))), wire);
    const Bytes digits = Hex("31 32 33 34 35 36 37 38 39");
    EXPECT_EQ(Checksum(digits.data(), digits.size()), 0x906E);
}

TEST(HandsetFraming, OnlyGoodFramesBecomePackets) {
    const struct {
        const char* wire;
        const char* packets;
        size_t dropped;
    } cases[] = {
        {"7E 7E 00 78 F0 7E 7E", "00;", 0},
        {"13 01 02 7E 00 78 F0 7E", "00;", 1},
        {"7D 5E 7D 5D F1 CD 7E", "7E 7D;", 0},
        {"00 78 F0 7D 7E 00 78 F0 7E", "00;", 1},
        {"78 F0 7E", "", 1},
        {"00 78 F0", "", 0},
    };
    for (const auto& [wire, packets, dropped] : cases) {
        const Bytes bytes = Hex(wire);
        Deframer deframer;
        std::string found;
        size_t used = 0;
        for (size_t at = 0; at < bytes.size(); at += used)
            if (const auto packet = deframer.Take(bytes.data() + at, bytes.size() - at, used))
                found += ToHex(*packet) + ";";
        EXPECT_EQ(found, packets) << wire;
        EXPECT_EQ(deframer.Dropped(), dropped) << wire;
    }
}

TEST(HandsetFileSystem, AnswersWithTheErrorNumbersOfThePhone) {
    FileSystem files;
    files.AddFile("/a/file", "text");
    files.AddFile("/a/locked", Bytes(3), 0200);
    files.AddFolder("/a/sub/deep");
    files.AddLink("/a/up", "../a/sub");
    files.AddLink("/loop", "loop");
    files.AddLink("/dangling", "/a/made");
    int32_t fd = -1;
    const auto open = [&](const char* path, uint32_t flags) { return files.Open(path, flags, 0666, fd); };
    const std::string longName(256, 'n');
    const std::pair<const char*, Errnum> results[] = {
        {"read", open("a//file", kReadOnly)},
        {"missing", open("/a/none", kReadOnly)},
        {"file as folder", open("/a/file/x", kReadOnly)},
        {"folder as file", open("/a/sub", kReadOnly)},
        {"not readable", open("/a/locked", kReadOnly)},
        {"writable", open("/a/locked", kWriteOnly)},
        {"exclusive", open("/a/file", kWriteOnly | kCreate | kExclusive)},
        {"made through a link", open("/dangling", kWriteOnly | kCreate)},
        {"link loop", open("/loop", kReadOnly)},
        {"name of 256 bytes", files.MakeFolder(longName, 0777)},
        {"name of 255 bytes", files.MakeFolder(longName.substr(1), 0777)},
        {"folder exists", files.MakeFolder("/a/up", 0777)},
        {"folder below nothing", files.MakeFolder("/none/x", 0777)},
        {"remove through a link", files.RemoveFolder("/a/up/deep")},
        {"folder not empty", files.RemoveFolder("/a")},
        {"remove the root", files.RemoveFolder("/")},
        {"unlink a folder", files.Unlink("/a/sub")},
        {"folder into itself", files.Rename("/a", "/a/sub/x")},
        {"file over folder", files.Rename("/a/file", "/a/sub")},
        {"file over file", files.Rename("/a/file", "/a/locked")},
        {"unlink a link", files.Unlink("/a/up")},
        {"close twice", (files.Close(fd), files.Close(fd))},
    };
    const Errnum expected[] = {
        Errnum::None, Errnum::NotFound,      Errnum::NotFolder, Errnum::IsFolder, Errnum::NoAccess,
        Errnum::None, Errnum::Exists,        Errnum::None,      Errnum::LinkLoop, Errnum::NameTooLong,
        Errnum::None, Errnum::Exists,        Errnum::NotFound,  Errnum::None,     Errnum::NotEmpty,
        Errnum::Busy, Errnum::IsFolder,      Errnum::Invalid,   Errnum::IsFolder, Errnum::None,
        Errnum::None, Errnum::BadDescriptor,
    };
    for (size_t i = 0; i < std::size(results); ++i)
        EXPECT_EQ(results[i].second, expected[i]) << results[i].first;
    EXPECT_TRUE(files.Exists("/a/made") && files.Exists("/a/sub") && !files.Exists("/a/sub/deep"));
    EXPECT_EQ(files.Content("/a/locked"), Bytes({'t', 'e', 'x', 't'}));
}

TEST(HandsetFileSystem, SpaceEndsAndComesBackWithTheLastUser) {
    FileSystem files;
    files.SetFreeBlocks(2);
    int32_t fd = -1;
    uint32_t written = 0;
    ASSERT_EQ(files.Open("x", kWriteOnly | kCreate, 0666, fd), Errnum::None);
    EXPECT_EQ(files.Write(fd, 0, Bytes(600, 1), written), Errnum::None);
    EXPECT_EQ(files.Write(fd, 600, Bytes(600, 2), written), Errnum::None);
    EXPECT_EQ(written, 424u);
    EXPECT_EQ(files.Write(fd, 1024, Bytes(1), written), Errnum::NoSpace);
    EXPECT_EQ(files.MakeFolder("y", 0777), Errnum::NoSpace);
    EXPECT_EQ(files.Unlink("x"), Errnum::None);
    EXPECT_EQ(files.GetSpace().freeBlocks, 0u);
    EXPECT_EQ(files.Close(fd), Errnum::None);
    EXPECT_EQ(files.GetSpace().freeBlocks, 2u);
}

TEST(Handset, AnswersEveryGroupOfCommands) {
    Handset handset;
    handset.WithFiles([](FileSystem& files) {
        files.SetFreeBlocks(100);
        files.AddFile("/d/t", Bytes({'a', 'b', 'c'}), 0644, Times{1, 2, 3});
        files.AddLink("/l", "d/t");
    });
    Client client(handset.TtyPath());
    const std::pair<std::string, std::string> exchanges[] = {
        {"7B 00 01 02", "7B 00 01 02"},
        {"4B 13 0F 00 " + HexOf("l") + " 00",
         "4B 13 0F 00 00 00 00 00 A4 81 00 00 03 00 00 00 01 00 00 00 01 00 00 00 02 00 00 00 03 00 00 00"},
        {"4B 13 02 00 00 00 00 00 24 01 00 00 " + HexOf("/l") + " 00", "4B 13 02 00 00 00 00 00 00 00 00 00"},
        {"4B 13 04 00 00 00 00 00 00 06 00 00 01 00 00 00",
         "4B 13 04 00 00 00 00 00 01 00 00 00 02 00 00 00 00 00 00 00 62 63"},
        {"4B 13 03 00 00 00 00 00", "4B 13 03 00 00 00 00 00"},
        {"4B 13 0B 00 2F 00", "4B 13 0B 00 01 00 00 00 00 00 00 00"},
        {"4B 13 0C 00 01 00 00 00 03 00 00 00",
         "4B 13 0C 00 01 00 00 00 03 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
         "00 "
         "00 00 00 00 00 00 00"},
        {"4B 13 0D 00 01 00 00 00", "4B 13 0D 00 00 00 00 00"},
        {"4B 13 07 00 " + HexOf("l") + " 00", "4B 13 07 00 00 00 00 00 64 2F 74 00"},
        {"4B 13 09 00 FF 01 2F 61 00", "4B 13 09 00 00 00 00 00"},
        {"4B 13 0E 00 2F 61 00 2F 62 00", "4B 13 0E 00 00 00 00 00"},
        {"4B 13 0A 00 2F 61 00", "4B 13 0A 00 02 00 00 00"},
        {"59 08 02 6C 00 05 00 00 00 06 00 00 00", "59 08 00"},
        {"59 07 02 6C 00", "59 07 00 05 00 00 00 06 00 00 00 03 00 00 00"},
        {"59 07 03 6C 00", "15 59 07 03 6C 00"},
        {"4B 13 0F 00 6C", "15 4B 13 0F 00 6C"},
        {"4B 13 63 00", "13 4B 13 63 00"},
        {"26", "15 26"},
        {"4C", "13 4C"},
        {"4B 77 00 00", "13 4B 77 00 00"},
    };
    size_t count = 0;
    for (const auto& [request, answer] : exchanges) {
        EXPECT_EQ(client.Exchange(request), answer) << request;
        EXPECT_EQ(ToHex(handset.Requests().at(count++)), request);
    }
    const std::string space = client.Exchange("4B 13 13 00 00");
    EXPECT_EQ(space.size(), 48u * 3 - 1);
    EXPECT_EQ(space.substr(20 * 3, 4 * 3), "00 02 00 00 ");
    EXPECT_TRUE(client.Exchange("00").starts_with("00 "));
}

TEST(Handset, MisbehavesAsTold) {
    using Action = Misbehaviour::Action;
    const std::string one = "7B 01";
    const std::string two = "7B 02";
    const struct {
        Misbehaviour rule;
        std::string wire; // what comes for the requests one and two
    } cases[] = {
        {{Action::Drop}, Wire({two})},
        {{Action::Ignore}, Wire({two})},
        {{Action::Late}, Wire({one, two})},
        {{Action::Duplicate}, Wire({one, one, two})},
        {{Action::Corrupt}, "7B 00" + Wire({one}).substr(5) + " " + Wire({two})},
        {{.action = Action::Cut, .value = 1}, Wire({"7B", two})},
        {{.action = Action::Enlarge, .times = -1, .value = 2}, Wire({"7B 01 00 00", "7B 02 00 00"})},
        {{.action = Action::Refuse, .value = 28}, Wire({"13 7B 01", two})},
        {{.action = Action::ProtocolError, .prefix = Hex(two), .value = 0x14}, Wire({one, "14 7B 02"})},
        {{.action = Action::Before, .skip = 1, .packets = {Hex("00")}}, Wire({one, "00", two})},
        {{.action = Action::Replace, .packets = {Hex("00")}}, Wire({"00", two})},
        {{.action = Action::Delay, .value = 1}, Wire({one, two})},
    };
    for (const auto& [rule, wire] : cases) {
        Handset handset;
        handset.Misbehave(rule);
        Client client(handset.TtyPath());
        client.Write(Frame(Hex(one)));
        client.Write(Frame(Hex(two)));
        EXPECT_EQ(client.Read(Hex(wire).size()), wire) << static_cast<int>(rule.action);
    }
}

TEST(Handset, ChattersScriptsAndSpeaksText) {
    Handset handset;
    handset.SetChatter(1);
    handset.Script(Hex("26"), {Hex("26 01")});
    handset.Script(Hex("26 07"), [&](const Bytes& request) { return std::vector<Bytes>{request, request}; });
    Client client(handset.TtyPath());
    EXPECT_TRUE(client.Exchange("26 05").starts_with("10 00 11 00 11 00"));
    EXPECT_EQ(client.Receive(), "26 01");
    handset.SetChatter(0);
    EXPECT_EQ(client.Exchange("26 07"), "26 07");
    EXPECT_EQ(client.Receive(), "26 07");
    EXPECT_EQ(client.Exchange("44"), "44 01");
    client.Write(Frame(Hex("7B 01")));
    client.Write(Hex(HexOf("AT\rATX\rAT$QCDMG\r")));
    EXPECT_EQ(client.Read(21), HexOf("\r\nOK\r\n\r\nERROR\r\n\r\nOK\r\n"));
    EXPECT_FALSE(handset.DataMode());
    EXPECT_EQ(client.Exchange("7B 03"), "7B 03");
}

TEST(HandsetDeviceRoot, FollowsTheHandset) {
    DeviceRoot root;
    const fs::path dir = root.Path();
    const auto line = [&](const fs::path& file) {
        std::string text;
        std::getline(std::ifstream(file) >> std::ws, text);
        return text;
    };
    auto handset = std::make_unique<Handset>();
    root.Plug(*handset);
    root.AddPlainTty("ttyS0", "");
    const fs::path tty = fs::canonical(dir / "sys/class/tty/ttyUSB0");
    EXPECT_TRUE(fs::read_symlink(dir / "sys/class/tty/ttyUSB0").is_relative());
    EXPECT_TRUE(tty.string().ends_with("/usb1/1-1/1-1.2/1-1.2:1.1/ttyUSB0/tty/ttyUSB0")) << tty;
    const fs::path interface = tty.parent_path().parent_path().parent_path();
    EXPECT_EQ(line(interface / "bInterfaceNumber"), "01");
    EXPECT_EQ(line(interface / "../idVendor") + line(interface / "../idProduct"), "05c63197");
    EXPECT_EQ(fs::read_symlink(dir / "dev/ttyUSB0"), handset->TtyPath());
    Client client(dir / "dev/ttyUSB0");
    handset->Misbehave({.action = Misbehaviour::Action::Unplug});
    EXPECT_EQ(client.Exchange("7B"), "nothing");
    handset->Unplug();
    EXPECT_FALSE(fs::is_symlink(dir / "dev/ttyUSB0"));
    handset->Replug();
    EXPECT_EQ(fs::read_symlink(dir / "dev/ttyUSB0"), handset->TtyPath());
    EXPECT_TRUE(fs::exists(tty));
    handset.reset();
    EXPECT_FALSE(fs::exists(tty));
    root.Clear();
    EXPECT_TRUE(fs::is_empty(dir / "sys/class/tty") && fs::is_empty(dir / "dev"));
}

} // namespace
} // namespace handset
