// The search for a handset in a device tree with arbitrary content.
#include <filesystem>
#include <fstream>
#include <vector>

#include "input.h"
#include "platform/serial_ports.h"
#include "plugin/port_discovery.h"

namespace {

namespace fs = std::filesystem;

/// A path of up to 5 names from real device trees.
fs::path TreePath(Input& input) {
    static constexpr const char* kNames[] = {
        "sys/class/tty", "sys/devices", "1-1.2",    "1-1.2:1.0", "ttyUSB0", "ttyUSB1",          "ttyACM0",
        "ttyACM49",      "ttyUSB01",    "ttyUSB50", "..",        "tty",     "bInterfaceNumber", "idVendor",
        "idProduct",     "interface",   "product",  "/",         "sys",     "devices"};
    fs::path path;
    for (size_t i = input.Byte() % 6; i > 0; --i)
        path /= kNames[input.Byte() % std::size(kNames)];
    return path;
}

/// Makes links last, so that nothing is written through a link.
void MakeTree(const fs::path& root, Input& input) {
    std::vector<std::pair<fs::path, fs::path>> links;
    std::error_code ignored;
    for (int i = 0; i < 12 && !input.IsEmpty(); ++i) {
        const unsigned iKind = input.Byte() % 3;
        const fs::path entry = (root / TreePath(input).relative_path()).lexically_normal();
        if (entry.lexically_relative(root).native().starts_with(".."))
            continue;
        fs::create_directories(iKind == 0 ? entry : entry.parent_path(), ignored);
        if (iKind == 1)
            std::ofstream(entry, std::ios::binary) << input.Text();
        else if (iKind == 2)
            links.emplace_back(entry, TreePath(input));
    }
    for (const auto& [entry, target] : links)
        fs::create_symlink(target, entry, ignored);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize) {
    static const fs::path root = fs::absolute("fuzz-devices");
    setenv("QUILLET_DEVICE_ROOT", root.c_str(), 1);
    Input input(pData, iSize);
    int iBytes = input.Byte() % 20;
    MakeTree(root, input);
    std::vector<std::string> names;
    ListSerialPorts(names);
    const auto pPorts = Area<unsigned char>(static_cast<size_t>(iBytes));
    int iDevices = 0;
    FindPhonePorts(pPorts.get(), &iDevices, &iBytes);
    fs::remove_all(root);
    // The other system's device tree.
    std::vector<PhonePortRecord> phones;
    while (!input.IsEmpty())
        RecordPhoneInterface({input.Text(), input.Text(), input.Text()}, phones);
    return 0;
}
