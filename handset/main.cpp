// The program simulated-handset: runs a simulated handset for a client.
#include <cstdio>
#include <exception>
#include <memory>
#include <string>

#include "handset/command_loop.h"
#include "handset/console.h"
#include "handset/device_root.h"
#include "handset/file_system.h"
#include "handset/fill.h"
#include "handset/handset.h"
#include "handset/misbehaviour.h"

namespace {

using namespace handset;

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr size_t kKeptRequests = 100000;
constexpr uint32_t kFreeBlocks = 131072; // 64 MiB

struct Options {
    std::string deviceRoot;
    std::string fill;
    std::string control;
    UsbIdentity identity;
    unsigned long latency = 0;
    unsigned long freeBlocks = kFreeBlocks;
    bool printRequests = false;
    bool help = false;
};

void PrintHelp() {
    std::printf(
        "simulated-handset: a handset on a pseudo-terminal that speaks the diagnostic protocol\n\n"
        "  --device-root DIR       make the handset a USB device in folder DIR; start clients with\n"
        "                          QUILLET_DEVICE_ROOT=DIR\n"
        "  --fill FOLDER           copy the content of FOLDER into the handset (default: a small sample)\n"
        "  --free BLOCKS           free blocks of 512 bytes (default %u)\n"
        "  --vendor HEX, --product HEX   USB ids (default 05C6 and 3197)\n"
        "  --bus NAME              name of the USB device (default 1-1.2)\n"
        "  --latency MICROSECONDS  delay of every response (default 0)\n"
        "  --requests              print every request as it arrives\n"
        "  --control SOCKET        accept commands on a unix socket\n"
        "  --help                  print this help\n\n"
        "Prints \"ready TTY\" once it answers requests. SIGINT, SIGTERM or the command quit\n"
        "ends it. Commands come from standard input and from SOCKET. The output of a\n"
        "command ends with \"ok\" or \"error: REASON\".\n\n"
        "Commands:\n\n%s\n"
        "ACTION of misbehave (N: value=, PACKETS: packet=):\n\n%s",
        kFreeBlocks, Console::Help().c_str(), FaultHelp().c_str());
}

/// Sets one option; false when there is no such option or the value is invalid.
bool SetOption(const std::string& name, const std::string& value, Options& options) {
    unsigned long number = 0;
    if (name == "--device-root" && !value.empty())
        options.deviceRoot = value;
    else if (name == "--fill" && !value.empty())
        options.fill = value;
    else if (name == "--control" && !value.empty())
        options.control = value;
    else if (name == "--bus" && value.find('-') != std::string::npos && value.find('/') == std::string::npos)
        options.identity.busName = value;
    else if (name == "--vendor" && ParseNumber(value, 16, 0xFFFF, number))
        options.identity.vendor = static_cast<unsigned>(number);
    else if (name == "--product" && ParseNumber(value, 16, 0xFFFF, number))
        options.identity.product = static_cast<unsigned>(number);
    else if (name == "--latency")
        return ParseNumber(value, 10, 0xFFFFFFFF, options.latency);
    else if (name == "--free")
        return ParseNumber(value, 10, 0xFFFFFFFF, options.freeBlocks);
    else
        return false;
    return true;
}

bool ParseOptions(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--help")
            options.help = true;
        else if (name == "--requests")
            options.printRequests = true;
        else if (i + 1 >= argc || !SetOption(name, argv[++i], options)) {
            std::fprintf(stderr, "simulated-handset: wrong option %s (see --help)\n", name.c_str());
            return false;
        }
    }
    return true;
}

std::string Fill(Handset& handset, const Options& options) {
    std::string problem;
    handset.WithFiles([&](FileSystem& files) {
        files.SetFreeBlocks(UINT32_MAX);
        if (options.fill.empty())
            FillWithSample(files);
        else
            problem = FillFromFolder(files, options.fill);
        files.SetFreeBlocks(static_cast<uint32_t>(options.freeBlocks));
    });
    return problem;
}

int Run(const Options& options) {
    CommandLoop loop(options.control);
    Handset handset;
    handset.SetRecordLimit(kKeptRequests);
    handset.SetLatency(std::chrono::microseconds(options.latency));
    const std::string problem = Fill(handset, options);
    if (!problem.empty()) {
        std::fprintf(stderr, "simulated-handset: %s\n", problem.c_str());
        return kFailed;
    }
    if (options.printRequests)
        handset.OnRequest([](const Bytes& request) {
            std::printf("%s\n", ToHex(request).c_str());
            std::fflush(stdout);
        });
    std::unique_ptr<DeviceRoot> root;
    if (!options.deviceRoot.empty()) {
        root = std::make_unique<DeviceRoot>(options.deviceRoot);
        root->Plug(handset, options.identity);
    }
    std::printf("ready %s\n", handset.TtyPath().c_str());
    std::fflush(stdout);
    Console console(handset);
    loop.Serve([&](const std::string& line) { return console.Run(line); },
               [&] { return console.WantsToQuit(); });
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    if (!ParseOptions(argc, argv, options))
        return kWrongUsage;
    if (options.help) {
        PrintHelp();
        return 0;
    }
    try {
        return Run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simulated-handset: %s\n", error.what());
        return kFailed;
    }
}
