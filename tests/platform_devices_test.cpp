// Serial ports and present devices in various device trees.
#include <sys/stat.h>

#include "device_folder.h"
#include "platform/devices.h"
#include "platform/serial_ports.h"

namespace {

const std::string kUsb = "sys/devices/pci0000:00/usb1/1-1/1-1.2/";

/// Returns one line per device: "COM6|description|instance id".
std::string Devices(const char* sClassName) {
    std::vector<PresentDevice> devices;
    if (!ListPresentDevices(sClassName, devices))
        return "failed";
    std::string sAll;
    for (const PresentDevice& device : devices) {
        for (const auto& sText : {device.sPortName, device.sDescription, device.sInstanceId})
            sAll += sText.value_or("nothing") + "|";
        sAll.back() = '\n';
    }
    return sAll;
}

std::string Ports() {
    std::vector<std::string> names;
    if (!ListSerialPorts(names))
        return "failed";
    std::string sAll;
    for (const std::string& sName : names)
        sAll += sName + " ";
    return sAll;
}

/// A handset with a modem on interface 0 and a plain port on interface 1.
class DeviceTreeTest : public testing::Test {
protected:
    void SetUp() override {
        folder.Write(kUsb + "idVendor", "05c6\n");
        folder.Write(kUsb + "idProduct", "3197\n");
        folder.Write(kUsb + "product", "A handset\n");
        folder.Write(kUsb + "1-1.2:1.0/bInterfaceNumber", "00\n");
        folder.Write(kUsb + "1-1.2:1.0/interface", "Modem line\n");
        folder.Write(kUsb + "1-1.2:1.1/bInterfaceNumber", "01\n");
        folder.MakeFolder(kUsb + "1-1.2:1.0/tty/ttyACM0");
        folder.MakeFolder(kUsb + "1-1.2:1.1/ttyUSB4/tty/ttyUSB4");
        folder.Link("sys/class/tty/ttyACM0", "../../../" + kUsb + "1-1.2:1.0/tty/ttyACM0");
        folder.Link("sys/class/tty/ttyUSB4", "../../../" + kUsb + "1-1.2:1.1/ttyUSB4/tty/ttyUSB4");
    }

    DeviceFolder folder;
    const std::string sPort = "COM5|A handset|USB\\VID_05C6&PID_3197&MI_01\\1-1.2\n";
};

TEST_F(DeviceTreeTest, LinksAndFolders) {
    EXPECT_EQ(Devices("Modem"), "COM51|Modem line|USB\\VID_05C6&PID_3197&MI_00\\1-1.2\n");
    EXPECT_EQ(Devices("Ports"), sPort);
    EXPECT_EQ(Devices("Net"), "failed");
    folder.Link("sys/class/tty/ttyUSB4", "/" + kUsb + "1-1.2:1.1/ttyUSB4/tty/ttyUSB4");
    EXPECT_EQ(Devices("Ports"), sPort);
    folder.MakeFolder("sys/class/tty/ttyUSB0"); // no USB device above it
    EXPECT_EQ(Devices("Ports"), sPort);
    EXPECT_EQ(Ports(), "COM1 COM5 COM51 ");
}

TEST_F(DeviceTreeTest, NamesAndOrder) {
    for (const char* sName : {"ttyS0", "ttyUSB", "ttyUSB01", "ttyUSB50", "ttyACM50", "ttyUSB1a", "ttyUSB-1",
                              "xttyUSB1", "ttyUSB99999999999999999999", "ttyUSB9", "ttyUSB49", "ttyACM49"})
        folder.MakeFolder(std::string("sys/class/tty/") + sName);
    folder.Link("sys/class/tty/ttyUSB2", "../../nowhere");
    EXPECT_EQ(Ports(), "COM3 COM5 COM10 COM50 COM51 COM100 ");
}

TEST_F(DeviceTreeTest, BadAttributesAndLinks) {
    for (const std::string& sBad : {std::string(), std::string("05c6c"), std::string(1 << 20, '0')}) {
        folder.Write(kUsb + "idVendor", sBad);
        EXPECT_EQ(Devices("Ports"), "") << sBad.substr(0, 10);
    }
    folder.Write(kUsb + "idVendor", "05c6");
    EXPECT_EQ(Devices("Ports"), sPort);
    folder.Link("sys/class/tty/ttyUSB4", "ttyUSB4");
    EXPECT_EQ(Devices("Ports"), "");
}

TEST_F(DeviceTreeTest, DescriptionIsAlwaysPrintable) {
    const auto expect = [this](const std::string& sText) {
        EXPECT_EQ(Devices("Ports"), "COM5|" + sText + "|USB\\VID_05C6&PID_3197&MI_01\\1-1.2\n");
    };
    folder.Write(kUsb + "product", "Two\nlines");
    expect("Two");
    folder.Write(kUsb + "product", std::string(1 << 20, 'p'));
    expect(std::string(64, 'p'));
    folder.Write(kUsb + "product", "bell\x07");
    expect("USB serial port");
    // An attribute that is a pipe without a writer must not block the look-up.
    const std::string sPipe = folder.Path(kUsb + "product");
    std::filesystem::remove(sPipe);
    ASSERT_EQ(mkfifo(sPipe.c_str(), 0600), 0);
    expect("USB serial port");
}

TEST(DeviceTreeRootTest, UnreadableTree) {
    const DeviceFolder folder;
    folder.Write("sys/class/tty", "a file");
    EXPECT_EQ(Ports(), "failed");
    EXPECT_EQ(Devices("Ports"), "failed");
}

} // namespace
