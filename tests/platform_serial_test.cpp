// The serial port over a pseudo-terminal.
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <chrono>
#include <future>
#include <numeric>
#include <thread>
#include <tuple>

#include "device_folder.h"
#include "platform/serial_wait.h"
#include "system/serial.h"

namespace {

constexpr DWORD kPatience_ms = 60000;

DCB Line(DWORD iBaudRate, BYTE iByteSize) {
    DCB state = {};
    state.BaudRate = iBaudRate;
    state.ByteSize = iByteSize;
    return state;
}

HANDLE OpenCom(const std::string& sName) {
    return CreateFileA(sName.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
}

/// Sets the time after which a write to a device that does not read ends.
void SetWriteTimeout(HANDLE hPort, DWORD iMultiplier, DWORD iConstant) {
    COMMTIMEOUTS timeouts = {MAXDWORD, 0, 0, iMultiplier, iConstant};
    ASSERT_TRUE(SetCommTimeouts(hPort, &timeouts));
}

class SerialPortTest : public testing::Test {
protected:
    void SetUp() override {
        hPort = OpenCom(R"(\\.\COM3)");
        ASSERT_NE(hPort, INVALID_HANDLE_VALUE) << GetLastError();
    }
    void TearDown() override { CloseHandle(hPort); }

    /// Reads until `iCount` bytes have arrived, as the receive thread does.
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
    const std::string sBytes = std::string(100000, 'x'); // more than the line buffers
    DWORD iWritten = 0;
};

TEST(SerialOpenTest, NamesThatAreNotPorts) {
    const DeviceFolder folder;
    const PtyDevice device(folder, "ttyUSB0");
    folder.Write("dev/ttyUSB3", "a file");
    folder.Link("dev/ttyUSB4", "/nowhere");
    for (const char* sName : {"", "COM1", R"(\\.\COM)", R"(\\.\COM01)", R"(\\.\COM1x)",
                              R"(\\.\COM99999999999)", R"(\\.\COM2)", R"(\\.\COM4)", R"(\\.\COM5)"}) {
        EXPECT_EQ(OpenCom(sName), INVALID_HANDLE_VALUE) << sName;
        EXPECT_EQ(GetLastError(), 2u) << sName;
    }
    EXPECT_TRUE(CloseHandle(OpenCom(R"(\\.\COM1)")));
}

TEST_F(SerialPortTest, IsExclusiveUntilClosed) {
    const int fdOther = open(device.SlaveName().c_str(), O_RDWR | O_NOCTTY);
    int iExclusive = 0;
    // A privileged user can open an exclusive port and query the flag.
    EXPECT_TRUE(fdOther < 0 || (ioctl(fdOther, TIOCGEXCL, &iExclusive) == 0 && iExclusive == 1));
    close(fdOther);
    ASSERT_TRUE(CloseHandle(hPort));
    const int fdFree = open(device.SlaveName().c_str(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(flock(fdFree, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(OpenCom(R"(\\.\COM3)"), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 5u);
    close(fdFree);
    hPort = OpenCom(R"(\\.\COM3)");
    EXPECT_NE(hPort, INVALID_HANDLE_VALUE);
}

TEST_F(SerialPortTest, CarriesEveryByteBothWays) {
    std::string sEvery(256, '\0');
    std::iota(sEvery.begin(), sEvery.end(), '\0');
    device.Send(sEvery);
    EXPECT_EQ(Receive(256), sEvery);
    // If the tty echoed, the echo would arrive before the written bytes.
    ASSERT_TRUE(WriteFile(hPort, sEvery.data(), 256, &iWritten, nullptr));
    EXPECT_EQ(device.Take(256), sEvery);
}

TEST_F(SerialPortTest, LineSettings) {
    const std::tuple<DCB, bool, speed_t> cases[] = {
        {Line(115200, 8), true, B115200},
        {Line(115201, 8), false, B115200},
        {Line(115200, 9), false, B115200},
        {Line(921600, 7), true, B921600},
    };
    for (auto [state, bTaken, iSpeed] : cases) {
        EXPECT_EQ(SetCommState(hPort, &state), bTaken) << state.BaudRate;
        termios settings = {};
        ASSERT_EQ(tcgetattr(device.Descriptor(), &settings), 0);
        EXPECT_EQ(cfgetospeed(&settings), iSpeed);
        EXPECT_EQ(settings.c_lflag & (ECHO | ICANON | ISIG), 0u);
        EXPECT_EQ(settings.c_iflag & (IXON | IXOFF | ICRNL), 0u);
    }
}

TEST_F(SerialPortTest, CountsAndPurgesInput) {
    char aBuffer[10];
    DWORD iRead = 0;
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
    EXPECT_LT(iWritten, 100000u);

    // The bytes counted as written arrive, and the device takes the rest once it reads again.
    SetWriteTimeout(hPort, 1, 50);
    std::thread reader([&] { EXPECT_EQ(device.Take(100000), sBytes); });
    DWORD iRest = 0;
    EXPECT_TRUE(WriteFile(hPort, sBytes.data() + iWritten, 100000 - iWritten, &iRest, nullptr));
    EXPECT_EQ(iRest, 100000 - iWritten);
    reader.join();
}

TEST_F(SerialPortTest, UnpluggedDeviceFailsEveryTransfer) {
    SetWriteTimeout(hPort, 0, 600000);
    std::thread writer([&] {
        EXPECT_FALSE(WriteFile(hPort, sBytes.data(), 100000, &iWritten, nullptr));
        EXPECT_EQ(GetLastError(), 31u);
    });
    device.Take(1); // the writer has started
    device.HangUp();
    writer.join();
    // The waits are short, so that a thread that waits for input soon notices the failure.
    const auto waits = std::async(std::launch::async, [&] {
        for (int i = 0; i < 20; ++i)
            WaitForSerialInput(hPort, kPatience_ms);
    });
    EXPECT_EQ(waits.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    char aByte[1];
    DWORD iRead = 99;
    EXPECT_FALSE(ReadFile(hPort, aByte, 1, &iRead, nullptr));
    EXPECT_EQ(GetLastError(), 31u);
    EXPECT_EQ(iRead, 0u);
}

TEST_F(SerialPortTest, CloseWakesOtherThreads) {
    SetWriteTimeout(hPort, 0, 600000);
    std::thread writer([&] {
        EXPECT_FALSE(WriteFile(hPort, sBytes.data(), 100000, &iWritten, nullptr));
        EXPECT_EQ(GetLastError(), 6u);
    });
    std::thread receiver([&] { EXPECT_EQ(Receive(1), ""); });
    device.Take(1); // the writer has started
    EXPECT_TRUE(CloseHandle(hPort));
    writer.join();
    receiver.join();
}

TEST_F(SerialPortTest, ClosedHandleDoesNotAffectTheNextPort) {
    const HANDLE hClosed = hPort;
    ASSERT_TRUE(CloseHandle(hPort));
    hPort = OpenCom(R"(\\.\COM3)");
    device.Send("x");
    WaitForSerialInput(hPort, kPatience_ms);
    char aByte[1] = {};
    EXPECT_FALSE(PurgeComm(hClosed, PURGE_RXCLEAR));
    EXPECT_FALSE(ReadFile(hClosed, aByte, 1, &iWritten, nullptr));
    EXPECT_FALSE(CloseHandle(hClosed));
    EXPECT_EQ(GetLastError(), 6u);
    WaitForSerialInput(hClosed, kPatience_ms);
    EXPECT_EQ(Receive(1), "x");
}

} // namespace
