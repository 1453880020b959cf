// Finding the phone's ports among the machine's devices.
#include <gtest/gtest.h>

#include "handset/device_root.h"
#include "handset/handset.h"
#include "plugin/port_discovery.h"

namespace {

using Ports = std::array<uint32_t, kPhoneInterfaces>;

TEST(PortDiscovery, AcceptedDevices) {
    const std::string sGood = R"(USB\VID_05C6&PID_3197&MI_01\6&1a2b3c4d&0&0001)";
    // The port, the instance id, the key (null: not accepted) and the ports of the interfaces.
    const std::tuple<std::optional<std::string>, std::optional<std::string>, const char*, Ports> cases[] = {
        {"COM5", sGood, "6&1a2b3c4d&0", {0, 5, 0}},
        {"COM0012", sGood, "6&1a2b3c4d&0", {0, 12, 0}},
        {"COM256", sGood, "6&1a2b3c4d&0", {0, 0, 0}},
        {"COM4294967297", sGood, "6&1a2b3c4d&0", {0, 0, 0}},
        {"COM1A", sGood, nullptr, {}},
        {{}, sGood, nullptr, {}},
        {"COM5", {}, nullptr, {}},
        {"COM5", R"(USB\VID_05C6&PID_9002&MI_00\1-1.2)", "1-1.2", {5, 0, 0}},
        {"COM5", R"(USB\VID_4B56&PID_0001&MI_02\1-1.2)", "1-1.2", {0, 0, 5}},
        {"COM5", R"(USB\VID_4b56&PID_0002&MI_02\two words)", "two", {0, 0, 5}},
        {"COM5", R"(USB\VID_05C6&PID_3197&MI_FF\1-1.2)", "1-1.2", {0, 0, 0}},
        {"COM5", R"(USB\VID_05C6&PID_3198&MI_01\1-1.2)", nullptr, {}},
        {"COM5", R"(USB\VID_05C6&PID_3197&MI_01\)", nullptr, {}},
        {"COM5", R"(USB\VID_05C6&PID_3197\1-1.2)", nullptr, {}},
        {"COM5", R"(USB\)", nullptr, {}},
    };
    for (const auto& [sPort, sInstanceId, sKey, ports] : cases) {
        std::vector<PhonePortRecord> phones;
        RecordPhoneInterface({sPort, "a port", sInstanceId}, phones);
        const std::string sCase = sPort.value_or("-") + " " + sInstanceId.value_or("-");
        ASSERT_EQ(phones.size(), sKey ? 1u : 0u) << sCase;
        EXPECT_TRUE(!sKey || (phones[0].DeviceKey == sKey && phones[0].InterfacePort == ports)) << sCase;
    }
}

TEST(PortDiscovery, TableOfPhonesIsLimited) {
    std::vector<PhonePortRecord> phones;
    for (int i = 0; i < 200; ++i)
        RecordPhoneInterface({"COM7", "", R"(USB\VID_05C6&PID_3197&MI_01\)" + std::to_string(i)}, phones);
    EXPECT_EQ(phones.size(), 128u);
}

TEST(PortDiscovery, PortsInOrder) {
    handset::DeviceRoot root;
    handset::Handset first, second, other;
    setenv("QUILLET_DEVICE_ROOT", root.Path().c_str(), 1);
    using Bytes = std::vector<int>;
    const auto expectPorts = [](int iCapacity, int iDevices, const Bytes& expected) {
        std::vector<unsigned char> buffer(20, 0xEE);
        int iCount = -1;
        int iBytes = iCapacity;
        EXPECT_EQ(FindPhonePorts(buffer.data(), &iCount, &iBytes), 1);
        EXPECT_EQ(iCount, iDevices);
        ASSERT_EQ(iBytes, static_cast<int>(expected.size()));
        EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + iBytes), expected);
        EXPECT_EQ(buffer[static_cast<size_t>(iBytes)], 0xEE);
    };
    root.Plug(other, {0x05C6, 0x0001, "1-9"}, {{"ttyUSB0", 1, true}});
    expectPorts(19, 0, {});
    root.Plug(first, {0x05C6, 0x3197, "1-1"}, {{"ttyUSB5", 1, true}, {"ttyUSB6", 2}, {"ttyUSB7", 3}});
    expectPorts(19, 1, {0, 6, 7});
    // The modem class is searched first, so the second handset, which has a modem, comes first.
    root.Plug(second, {0x4B56, 0x0002, "1-2"}, {{"ttyACM4", 0}, {"ttyUSB1", 1, true}});
    expectPorts(19, 2, {55, 2, 0, 0, 6, 7});
    expectPorts(4, 1, {55, 2, 0, 0});
    expectPorts(2, 0, {55, 2});
    expectPorts(-1, 0, {});
    unsetenv("QUILLET_DEVICE_ROOT");
}

TEST(PortDiscovery, FailureLeavesTheCountsUnchanged) {
    setenv("QUILLET_DEVICE_ROOT", "/nonexistent", 1);
    unsigned char aPorts[20];
    int iCount = -5;
    int iBytes = 20;
    EXPECT_EQ(FindPhonePorts(aPorts, &iCount, &iBytes), 0);
    EXPECT_EQ(std::pair(iCount, iBytes), std::pair(-5, 20));
}

} // namespace
