// The serial port over a pseudo-terminal.
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <functional>
#include <numeric>
#include <thread>
#include <tuple>

#include "device_folder.h"
#include "platform/serial_wait.h"
#include "system/serial.h"

namespace {

constexpr DWORD kPatience_ms = 60000;

DCB Line(DWORD iBaudRate, BYTE iByteSize, BYTE iParity = 0, BYTE iStopBits = 0) {
    DCB state = {};
    state.BaudRate = iBaudRate;
    state.ByteSize = iByteSize;
    state.Parity = iParity;
    state.StopBits = iStopBits;
    state.fParity = 1;
    return state;
}

HANDLE OpenCom(const std::string& sName) {
    return CreateFileA(sName.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
}

// A device that reads nothing makes a write end after this time.
void SetWriteTimeout(HANDLE hPort, DWORD iMultiplier, DWORD iConstant) {
    COMMTIMEOUTS timeouts = {MAXDWORD, 0, 0, iMultiplier, iConstant};
    ASSERT_TRUE(SetCommTimeouts(hPort, &timeouts));
}

size_t CountOpenDescriptors() {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(descriptors), end(descriptors)));
}

class SerialPortTest : public testing::Test {
protected:
    void SetUp() override {
        hPort = OpenCom(R"(\\.\COM3)");
        ASSERT_NE(hPort, INVALID_HANDLE_VALUE) << GetLastError();
    }
    void TearDown() override { CloseHandle(hPort); }

    // Reads until `iCount` bytes have come, as the receive thread does.
    std::string Receive(size_t iCount) {
        std::string sReceived;
        while (sReceived.size() < iCount) {
            WaitForSerialInput(hPort, kPatience_ms);
            char aBuffer[100];
            DWORD iRead = 0;
            if (!ReadFile(hPort, aBuffer, sizeof(aBuffer), &iRead, nullptr))
                break;
            sReceived.append(aBuffer, iRead);
        }
        return sReceived;
    }

    DeviceFolder folder;
    PtyDevice device{folder, "ttyUSB2"};
    HANDLE hPort = INVALID_HANDLE_VALUE;
    const std::string sBytes = std::string(100000, 'x'); // more than the line takes at once
    DWORD iWritten = 0;
};

TEST(SerialOpenTest, NamesThatAreNoPort) {
    const DeviceFolder folder;
    const PtyDevice device(folder, "ttyUSB0");
    const PtyDevice modem(folder, "ttyACM49");
    const PtyDevice outside(folder, "ttyUSB50"); // has no COM number
    folder.Write("dev/ttyUSB3", "a file");
    folder.Link("dev/ttyUSB4", "/nowhere");
    const size_t iDescriptors = CountOpenDescriptors();
    for (const char* sName : {"", "COM1", R"(\\.\COM)", R"(\\.\COM0)", R"(\\.\COM01)", R"(\\.\COM-1)",
                              R"(\\.\COM1x)", R"(\\.\COM101)", R"(\\.\COM99999999999)", R"(\\.\COM2)",
                              R"(\\.\COM4)", R"(\\.\COM5)", R"(\\.\COM51)"}) {
        EXPECT_EQ(OpenCom(sName), INVALID_HANDLE_VALUE) << sName;
        EXPECT_EQ(GetLastError(), 2u) << sName;
    }
    for (const char* sName : {R"(\\.\COM1)", R"(\\.\COM100)"}) {
        const HANDLE hPort = OpenCom(sName);
        EXPECT_NE(hPort, INVALID_HANDLE_VALUE) << sName;
        EXPECT_TRUE(CloseHandle(hPort));
    }
    EXPECT_EQ(CountOpenDescriptors(), iDescriptors);
}

TEST_F(SerialPortTest, IsExclusiveUntilClosed) {
    EXPECT_EQ(OpenCom(R"(\\.\COM3)"), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 5u);
    int iExclusive = 0;
    int fdOther = open(device.SlaveName().c_str(), O_RDWR | O_NOCTTY);
    if (fdOther >= 0) { // a privileged user gets past the mark, and sees it
        EXPECT_TRUE(ioctl(fdOther, TIOCGEXCL, &iExclusive) == 0 && iExclusive == 1);
        close(fdOther);
    }

    ASSERT_TRUE(CloseHandle(hPort));
    fdOther = open(device.SlaveName().c_str(), O_RDWR | O_NOCTTY);
    ASSERT_GE(fdOther, 0);
    ASSERT_EQ(ioctl(fdOther, TIOCGEXCL, &iExclusive), 0);
    EXPECT_EQ(iExclusive, 0);
    ASSERT_EQ(flock(fdOther, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(OpenCom(R"(\\.\COM3)"), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 5u);
    close(fdOther);
    hPort = OpenCom(R"(\\.\COM3)");
    EXPECT_NE(hPort, INVALID_HANDLE_VALUE);
}

TEST_F(SerialPortTest, CarriesEveryByteBothWays) {
    std::string sEvery(256, '\0');
    std::iota(sEvery.begin(), sEvery.end(), '\0');
    device.Send(sEvery);
    EXPECT_EQ(Receive(256), sEvery);

    // Had the tty echoed, its echo would come before what was written.
    ASSERT_TRUE(WriteFile(hPort, sEvery.data(), 256, &iWritten, nullptr));
    EXPECT_EQ(iWritten, 256u);
    EXPECT_EQ(device.Take(256), sEvery);
}

TEST_F(SerialPortTest, LineSettings) {
    const std::tuple<DCB, DWORD, speed_t> cases[] = {
        {Line(115200, 8), 0, B115200},      {Line(9600, 7, 2, 2), 0, B9600},
        {Line(115201, 8), 87, B9600},       {Line(0, 8), 87, B9600},
        {Line(115200, 9), 87, B9600},       {Line(115200, 8, 5), 87, B9600},
        {Line(115200, 8, 0, 1), 87, B9600}, {Line(921600, 8), 0, B921600},
    };
    for (auto [state, iError, iSpeed] : cases) {
        EXPECT_EQ(SetCommState(hPort, &state), iError == 0) << state.BaudRate;
        EXPECT_EQ(GetLastError(), iError) << state.BaudRate;
        termios settings = {};
        ASSERT_EQ(tcgetattr(device.Descriptor(), &settings), 0);
        EXPECT_EQ(cfgetospeed(&settings), iSpeed);
        EXPECT_EQ(settings.c_lflag & (ECHO | ICANON | ISIG), 0u);
        EXPECT_EQ(settings.c_iflag & (IXON | IXOFF | ICRNL), 0u);
    }
    DCB state = {};
    ASSERT_TRUE(GetCommState(hPort, &state));
    EXPECT_EQ(state.BaudRate, 921600u);
    EXPECT_EQ(state.ByteSize, 8);
    EXPECT_EQ(state.fParity, 1u);
    for (const DWORD iFunction : {SETRTS, CLRRTS, SETDTR, CLRDTR}) {
        EXPECT_FALSE(EscapeCommFunction(hPort, iFunction));
        EXPECT_EQ(GetLastError(), 1u);
    }
}

TEST_F(SerialPortTest, CountsAndPurgesInput) {
    char aBuffer[10];
    DWORD iRead = 99;
    EXPECT_TRUE(ReadFile(hPort, aBuffer, sizeof(aBuffer), &iRead, nullptr));
    EXPECT_EQ(iRead, 0u);

    device.Send("twelve bytes");
    WaitForSerialInput(hPort, kPatience_ms);
    COMSTAT stat = {};
    ASSERT_TRUE(ClearCommError(hPort, nullptr, &stat));
    EXPECT_EQ(stat.cbInQue, 12u);
    ASSERT_TRUE(PurgeComm(hPort, PURGE_TXCLEAR));
    ASSERT_TRUE(ReadFile(hPort, aBuffer, sizeof(aBuffer), &iRead, nullptr));
    EXPECT_EQ(std::string(aBuffer, iRead), "twelve byt");
    ASSERT_TRUE(PurgeComm(hPort, PURGE_TXCLEAR | PURGE_RXCLEAR));
    ASSERT_TRUE(ReadFile(hPort, aBuffer, sizeof(aBuffer), &iRead, nullptr));
    EXPECT_EQ(iRead, 0u);
}

TEST_F(SerialPortTest, WriteToADeviceThatDoesNotReadEndsShort) {
    SetWriteTimeout(hPort, 0, 20);
    EXPECT_TRUE(WriteFile(hPort, sBytes.data(), 100000, &iWritten, nullptr));
    EXPECT_GT(iWritten, 0u);
    EXPECT_LT(iWritten, 100000u);

    // What was counted as written arrives, and a device that reads again takes the rest.
    SetWriteTimeout(hPort, 1, 50);
    std::thread reader([&] { EXPECT_EQ(device.Take(100000), sBytes); });
    DWORD iRest = 0;
    EXPECT_TRUE(WriteFile(hPort, sBytes.data() + iWritten, 100000 - iWritten, &iRest, nullptr));
    EXPECT_EQ(iRest, 100000 - iWritten);
    reader.join();
}

TEST_F(SerialPortTest, DeviceThatGoesAwayFailsEveryTransfer) {
    device.HangUp();
    WaitForSerialInput(hPort, kPatience_ms);
    char aBuffer[10] = {};
    DWORD iCount = 99;
    EXPECT_FALSE(ReadFile(hPort, aBuffer, sizeof(aBuffer), &iCount, nullptr));
    EXPECT_EQ(GetLastError(), 31u);
    EXPECT_EQ(iCount, 0u);
    EXPECT_FALSE(WriteFile(hPort, aBuffer, sizeof(aBuffer), &iCount, nullptr));
    EXPECT_EQ(GetLastError(), 31u);
    EXPECT_EQ(iCount, 0u);
    EXPECT_TRUE(CloseHandle(hPort));

    const PtyDevice back(folder, "ttyUSB2");
    hPort = OpenCom(R"(\\.\COM3)");
    back.Send("back");
    EXPECT_EQ(Receive(4), "back");
}

TEST_F(SerialPortTest, HangUpEndsAWriteInProgress) {
    SetWriteTimeout(hPort, 0, 600000);
    std::thread hangUp([&] {
        device.Take(1);
        device.HangUp();
    });
    EXPECT_FALSE(WriteFile(hPort, sBytes.data(), 100000, &iWritten, nullptr));
    EXPECT_EQ(GetLastError(), 31u);
    EXPECT_LT(iWritten, 100000u);
    hangUp.join();
}

TEST_F(SerialPortTest, CloseWakesOtherThreads) {
    SetWriteTimeout(hPort, 0, 600000);
    std::thread writer([&] {
        EXPECT_FALSE(WriteFile(hPort, sBytes.data(), 100000, &iWritten, nullptr));
        EXPECT_EQ(GetLastError(), 6u);
    });
    std::thread receiver([&] { EXPECT_EQ(Receive(1), ""); });
    device.Take(1); // the writer is at work
    EXPECT_TRUE(CloseHandle(hPort));
    writer.join();
    receiver.join();
}

TEST_F(SerialPortTest, HandleThatIsNotOpenReachesNothing) {
    ASSERT_TRUE(CloseHandle(hPort));
    const HANDLE hClosed = hPort;
    hPort = OpenCom(R"(\\.\COM3)");
    device.Send("x");
    WaitForSerialInput(hPort, kPatience_ms);
    COMMTIMEOUTS timeouts = {MAXDWORD, 0, 0, 1, 50};
    DCB state = {};
    COMMPROP properties = {};
    COMSTAT stat = {};
    DWORD iCount = 0;
    char aByte[1] = {};
    const std::function<BOOL(HANDLE)> calls[] = {
        [](HANDLE h) { return SetupComm(h, 4096, 4096); },
        [&](HANDLE h) { return GetCommProperties(h, &properties); },
        [&](HANDLE h) { return GetCommTimeouts(h, &timeouts); },
        [&](HANDLE h) { return SetCommTimeouts(h, &timeouts); },
        [&](HANDLE h) { return GetCommState(h, &state); },
        [&](HANDLE h) { return SetCommState(h, &state); },
        [](HANDLE h) { return EscapeCommFunction(h, SETRTS); },
        [](HANDLE h) { return PurgeComm(h, PURGE_RXCLEAR); },
        [&](HANDLE h) { return ClearCommError(h, nullptr, &stat); },
        [&](HANDLE h) { return ReadFile(h, aByte, 1, &iCount, nullptr); },
        [&](HANDLE h) { return WriteFile(h, aByte, 1, &iCount, nullptr); },
        [](HANDLE h) { return CloseHandle(h); },
    };
    for (const HANDLE hOther : {hClosed, INVALID_HANDLE_VALUE, HANDLE{nullptr}}) {
        for (const auto& call : calls) {
            EXPECT_FALSE(call(hOther)) << &call - calls;
            EXPECT_EQ(GetLastError(), 6u) << &call - calls;
        }
        WaitForSerialInput(hOther, kPatience_ms);
    }
    EXPECT_EQ(Receive(1), "x");
}

} // namespace
