// Finding phones in the system's device tree, and the list of serial ports.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <thread>

#include "platform/context_handle.h"
#include "platform/devices.h"
#include "platform/local_files.h"
#include "platform/serial_ports.h"
#include "plugin/port_discovery.h"
#include "tests/windows/checks.h"
#include "tests/windows/device_tree.h"
#include "tests/windows/splash_checks.h"

namespace {

/// Returns the result, the number of devices and the bytes as text.
std::string Find(int iCapacity = 20) {
    unsigned char aPorts[20] = {};
    int iDevices = -1;
    int iBytes = iCapacity;
    std::ostringstream text;
    text << FindPhonePorts(aPorts, &iDevices, &iBytes) << ": " << iDevices << " devices,";
    for (int i = 0; i < iBytes && iDevices >= 0; ++i)
        text << ' ' << int{aPorts[i]};
    return text.str();
}

void NoDevices() {
    RemoveDevices();
    AddDevice({"VID_1234&PID_5678&MI_00\\1", true, "COM9"}); // creates the class
    EXPECT_EQ(Find(), "1: 0 devices,");
}

void OnePhone() {
    RemoveDevices();
    AddPhone();
    EXPECT_EQ(Find(), "1: 1 devices, 5 6 0");
}

void DevicesThatAreSkipped() {
    RemoveDevices();
    const std::string sPhone = "VID_05C6&PID_3197&MI_0";
    AddDevice({sPhone + "1\\KEY0", false, "COM"});
    AddDevice({sPhone + "1\\KEY1", false, "COM1A"});
    AddDevice({sPhone + "1\\KEY2", true, "com7"});
    AddDevice({sPhone + "1\\KEY3", false, "LPT1"});
    AddDevice({sPhone + "1\\KEY4", false, ""});
    AddDevice({sPhone + "1\\KEY5", true, "COM7", ""}); // no description
    AddDevice({sPhone + "1\\KEY6", false, "", "A device", true});
    AddDevice({"VID_05C6&PID_3198&MI_01\\KEY7", false, "COM7"});
    AddDevice({"VID_05C7&PID_3197&MI_01\\KEY8", false, "COM7"});
    AddDevice({"VID_05C6&PID_3197\\KEY9", false, "COM7"});
    EXPECT_EQ(Find(), "1: 0 devices,");
}

void ManyPhones() {
    RemoveDevices();
    AddDevice({"VID_4B56&PID_0002&MI_01\\7&BBBBBBBBBB&0", false, "COM12"});
    AddDevice({"VID_4B56&PID_0002&MI_00\\7&BBBBBBBBBB&1", true, "COM13"});
    AddDevice({"VID_05C6&PID_9002&MI_03\\7&CCCCCCCCCC&0", false, "COM14"});
    AddDevice({"VID_4B56&PID_0001&MI_01\\7&DDDDDDDDDD&0", false, "COM300"}); // too large for a byte
    EXPECT_EQ(Find(), "1: 3 devices, 13 12 0 0 0 0 0 0 0");
    EXPECT_EQ(Find(4), "1: 1 devices, 13 12 0 0");
    EXPECT_EQ(Find(2), "1: 0 devices, 13 12");
}

void ClassesAndPorts() {
    RemoveDevices();
    std::vector<PresentDevice> devices(3);
    EXPECT(!ListPresentDevices("No such class", devices));
    EXPECT(devices.empty());
    std::vector<std::string> ports;
    SetSerialPorts("COM5", "COM6");
    EXPECT(ListSerialPorts(ports));
    EXPECT_EQ(ports.size(), 2u);
    EXPECT(std::count(ports.begin(), ports.end(), "COM6") == 1);
}

/// File names are in the ANSI code page, whose upper half is not UTF-8.
void LocalFileNames() {
    const char* const sName = "caf\xE9.bin";
    std::remove(sName);
    EXPECT(!LocalFileExists(sName) && !LocalFileSize(sName));
    if (std::FILE* hFile = std::fopen(sName, "wb"); hFile != nullptr) {
        std::fputs("12345", hFile);
        std::fclose(hFile);
    }
    EXPECT(LocalFileExists(sName));
    EXPECT_EQ(LocalFileSize(sName).value_or(0), 5u);
    std::remove(sName);
    EXPECT(LocalFileExists(".") && !LocalFileSize("."));
}

/// The mutex belongs to the thread that created it until the handle is released.
void ContextHandles() {
    const char* const sName = "QLib_ResourceManager::CreateContext() - #check";
    void* const hContext = MakeContextHandle(sName);
    const HANDLE hMutex = OpenMutexA(SYNCHRONIZE, FALSE, sName);
    const auto wait = [&] {
        DWORD iResult = WAIT_FAILED;
        std::thread([&] { iResult = WaitForSingleObject(hMutex, 0); }).join();
        return iResult;
    };
    EXPECT_EQ(wait(), DWORD{WAIT_TIMEOUT});
    ReleaseContextHandle(hContext);
    EXPECT_EQ(wait(), DWORD{WAIT_OBJECT_0});
    CloseHandle(hMutex);
}

void IncompleteSetupApi() {
    AddPhone();
    SetLastError(0);
    EXPECT_EQ(Find(), "0: -1 devices,");
    EXPECT_EQ(GetLastError(), DWORD{ERROR_CALL_NOT_IMPLEMENTED});
    EXPECT(GetModuleHandleA("SETUPAPI.DLL") == nullptr);
}

} // namespace

int main(int iCount, char** asWords) {
    if (iCount > 1 && std::strcmp(asWords[1], "incomplete") == 0)
        return RunChecks({{"a SetupAPI that lacks a function", IncompleteSetupApi}});
    return RunChecks({{"no accepted device", NoDevices},
                      {"one handset", OnePhone},
                      {"devices that are not phones", DevicesThatAreSkipped},
                      {"several handsets", ManyPhones},
                      {"classes and serial ports", ClassesAndPorts},
                      {"local file names", LocalFileNames},
                      {"context handles", ContextHandles},
                      {"a module without resources", ModuleWithoutResources},
                      {"the version of a library", VersionOfASystemLibrary},
                      {"windows of the banner", WindowsOfTheBanner}});
}
