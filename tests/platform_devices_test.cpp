// Serial ports and present devices in device trees of many shapes.
#include <sys/stat.h>

#include <tuple>

#include "device_folder.h"
#include "platform/devices.h"
#include "platform/serial_ports.h"

namespace {

const std::string kUsb = "sys/devices/pci0000:00/usb1/1-1/1-1.2/";

// One line per device: "COM6|description|instance id".
std::string Devices(const char* sClassName) {
    std::vector<PresentDevice> devices(1);
    if (!ListPresentDevices(sClassName, devices))
        return devices.empty() ? "failed" : "failed, not empty";
    std::string sAll;
    for (const PresentDevice& device : devices) {
        for (const auto& sText : {device.sPortName, device.sDescription, device.sInstanceId})
            sAll += sText.value_or("nothing") + "|";
        sAll.back() = '\n';
    }
    return sAll;
}

std::string Ports() {
    std::vector<std::string> names = {"old"};
    if (!ListSerialPorts(names))
        return names.empty() ? "failed" : "failed, not empty";
    std::string sAll;
    for (const std::string& sName : names)
        sAll += sName + " ";
    return sAll;
}

// A handset with a modem on interface 0 and a plain port on interface 1.
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

TEST_F(DeviceTreeTest, LinksAndFoldersOfManyShapes) {
    EXPECT_EQ(Devices("Modem"), "COM51|Modem line|USB\\VID_05C6&PID_3197&MI_00\\1-1.2\n");
    EXPECT_EQ(Devices("Ports"), sPort);
    EXPECT_EQ(Devices("Net"), "failed");
    EXPECT_EQ(Devices(""), "failed");
    EXPECT_EQ(Ports(), "COM5 COM51 ");
    const std::string sTarget = kUsb + "1-1.2:1.1/ttyUSB4/tty/ttyUSB4";
    for (const std::string& sAbsolute : {folder.Path(sTarget), "/" + sTarget}) {
        folder.Link("sys/class/tty/ttyUSB4", sAbsolute);
        EXPECT_EQ(Devices("Ports"), sPort) << sAbsolute;
    }
    folder.MakeFolder("sys/class/tty/ttyUSB0"); // no USB device above it
    folder.Write("sys/class/tty/ttyUSB1/bInterfaceNumber", "02");
    folder.Write("sys/class/tty/ttyUSB1/idVendor", "4b56");
    folder.Write("sys/class/tty/ttyUSB1/idProduct", "0001");
    EXPECT_EQ(Devices("Ports"), "COM2|USB serial port|USB\\VID_4B56&PID_0001&MI_02\\ttyUSB1\n" + sPort);
    EXPECT_EQ(Ports(), "COM1 COM2 COM5 COM51 ");
}

TEST_F(DeviceTreeTest, NothingAboveSysfsIsLookedAt) {
    folder.Write("bInterfaceNumber", "01");
    folder.Write("idVendor", "05c6");
    folder.Write("idProduct", "3197");
    folder.MakeFolder("outside/tty/ttyUSB0");
    folder.MakeFolder("sys/devices/virtual/tty/ttyUSB1");
    folder.Link("sys/class/tty/ttyUSB0", "../../../outside/tty/ttyUSB0");
    folder.Link("sys/class/tty/ttyUSB1", "../../devices/virtual/tty/ttyUSB1");
    EXPECT_EQ(Devices("Ports"), sPort);
    EXPECT_EQ(Ports(), "COM1 COM2 COM5 COM51 ");
}

TEST_F(DeviceTreeTest, NamesAndOrder) {
    for (const char* sName :
         {"ttyS0", "tty", "ttyUSB", "ttyUSB01", "ttyUSB50", "ttyACM50", "ttyUSB1a", "ttyUSB-1", "ttyUSB+1",
          "xttyUSB1", "ttyUSB99999999999999999999", "ttyACM7", "ttyUSB10", "ttyUSB9", "ttyUSB49", "ttyACM49"})
        folder.MakeFolder(std::string("sys/class/tty/") + sName);
    folder.Link("sys/class/tty/ttyUSB2", "../../nowhere");
    EXPECT_EQ(Ports(), "COM3 COM5 COM10 COM11 COM50 COM51 COM58 COM100 ");
}

TEST_F(DeviceTreeTest, BadAttributesAndLinks) {
    const std::string sInterface = kUsb + "1-1.2:1.1/";
    const std::string sHuge(1 << 20, 'f');
    const std::tuple<std::string, std::string, std::string> files[] = {
        {kUsb + "idVendor", "", "05c6"},
        {kUsb + "idVendor", "05c6c", "05c6"},
        {kUsb + "idVendor", "0x5c", "05c6"},
        {kUsb + "idProduct", sHuge, "3197"},
        {kUsb + "idProduct", "31 7", "3197"},
        {kUsb + "idProduct", {"31\0007", 4}, "3197"},
        {kUsb + "idProduct", "-197", "3197"},
        {sInterface + "bInterfaceNumber", "100", "01"},
        {sInterface + "bInterfaceNumber", "\xFF\x01", "01"},
    };
    for (const auto& [sFile, sBad, sGood] : files) {
        folder.Write(sFile, sBad);
        EXPECT_EQ(Devices("Ports"), "") << sFile << " " << sBad.substr(0, 10);
        folder.Write(sFile, sGood);
    }
    EXPECT_EQ(Devices("Ports"), sPort);
    folder.Link(sInterface + "bInterfaceNumber", "bInterfaceNumber");
    EXPECT_EQ(Devices("Ports"), "");
    folder.Link("sys/class/tty/ttyUSB4", "ttyUSB4");
    EXPECT_EQ(Devices("Ports"), "");
    EXPECT_EQ(Ports(), "COM5 COM51 ");
}

TEST_F(DeviceTreeTest, DescriptionIsAlwaysAText) {
    const auto Described = [](const std::string& sText) {
        return "COM5|" + sText + "|USB\\VID_05C6&PID_3197&MI_01\\1-1.2\n";
    };
    const std::string sNone = "USB serial port";
    const std::pair<std::string, std::string> products[] = {
        {"Two\nlines", "Two"}, {std::string(1 << 20, 'p'), std::string(64, 'p')},
        {"", sNone},           {"bell\x07", sNone},
        {"\n", sNone},         {"%s|caf\xC3\xA9", "%s|caf\xC3\xA9"},
    };
    for (const auto& [sProduct, sDescription] : products) {
        folder.Write(kUsb + "product", sProduct);
        EXPECT_EQ(Devices("Ports"), Described(sDescription));
    }
    // A pipe without a writer in the place of an attribute must not hold the look-up.
    const std::string sPipe = folder.Path(kUsb + "product");
    std::filesystem::remove(sPipe);
    ASSERT_EQ(mkfifo(sPipe.c_str(), 0600), 0);
    EXPECT_EQ(Devices("Ports"), Described(sNone));
}

TEST(DeviceTreeRootTest, TreeThatCannotBeRead) {
    const DeviceFolder folder;
    EXPECT_EQ(Devices("Ports"), "failed");
    EXPECT_EQ(Ports(), "failed");
    folder.Write("sys/class/tty", "a file");
    EXPECT_EQ(Ports(), "failed");
    EXPECT_EQ(Devices("Modem"), "failed");
}

} // namespace
