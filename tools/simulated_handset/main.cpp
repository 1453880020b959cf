// The program simulated-handset: runs a simulated handset for a client.
#include <cstdio>
#include <memory>
#include <string>

#include "common/command_line.h"
#include "handset/command_loop.h"
#include "handset/console.h"
#include "handset/device_root.h"
#include "handset/file_system.h"
#include "handset/fill.h"
#include "handset/handset.h"
#include "handset/misbehaviour.h"

namespace {

using namespace handset;
using tools::Failure;
using tools::Job;

constexpr size_t kKeptRequests = 100000;
constexpr unsigned long kFreeBlocks = 131072; // 64 MiB

unsigned UsbId(const Job& job, const char* option, unsigned otherwise) {
    unsigned long id = otherwise;
    if (job.Has(option) && !ParseNumber(job.Value(option), 16, 0xFFFF, id))
        throw Failure(std::string(option) + " needs a hex number of up to four digits", tools::Status::Usage);
    return static_cast<unsigned>(id);
}

UsbIdentity Identity(const Job& job) {
    UsbIdentity identity;
    identity.vendor = UsbId(job, "--vendor", identity.vendor);
    identity.product = UsbId(job, "--product", identity.product);
    identity.busName = job.Value("--bus", identity.busName);
    if (identity.busName.find('-') == std::string::npos || identity.busName.find('/') != std::string::npos)
        throw Failure("--bus needs the name of a USB device, such as 1-1.2", tools::Status::Usage);
    return identity;
}

void RequireValues(const Job& job) {
    for (const char* option : {"--device-root", "--fill", "--control"})
        if (job.Has(option) && job.Value(option).empty())
            throw Failure(std::string(option) + " needs a value", tools::Status::Usage);
}

void Fill(Handset& handset, const Job& job) {
    const unsigned long freeBlocks = job.Number("--free", UINT32_MAX, kFreeBlocks);
    std::string problem;
    handset.WithFiles([&](FileSystem& files) {
        files.SetFreeBlocks(UINT32_MAX);
        if (job.Has("--fill"))
            problem = FillFromFolder(files, job.Value("--fill"));
        else
            FillWithSample(files);
        files.SetFreeBlocks(static_cast<uint32_t>(freeBlocks));
    });
    if (!problem.empty())
        throw Failure(problem);
}

void Run(const Job& job) {
    RequireValues(job);
    const UsbIdentity identity = Identity(job);
    CommandLoop loop(job.Value("--control"));
    Handset handset;
    handset.SetRecordLimit(kKeptRequests);
    handset.SetLatency(std::chrono::microseconds(job.Number("--latency", UINT32_MAX, 0)));
    Fill(handset, job);
    if (job.Has("--requests"))
        handset.OnRequest([](const Bytes& request) {
            std::printf("%s\n", ToHex(request).c_str());
            std::fflush(stdout);
        });
    std::unique_ptr<DeviceRoot> root;
    if (job.Has("--device-root")) {
        root = std::make_unique<DeviceRoot>(job.Value("--device-root"));
        root->Plug(handset, identity);
    }
    std::printf("ready %s\n", handset.TtyPath().c_str());
    std::fflush(stdout);
    Console console(handset);
    loop.Serve([&](const std::string& line) { return console.Run(line); },
               [&] { return console.WantsToQuit(); });
}

tools::Program MakeProgram() {
    using tools::Word;
    return {
        .name = "simulated-handset",
        .purpose = "a handset on a pseudo-terminal that speaks the diagnostic protocol",
        .commands = {},
        .options =
            {
                {"--device-root", "", "DIR",
                 "make the handset a USB device in folder DIR; start clients with QUILLET_DEVICE_ROOT=DIR",
                 Word::LocalPath},
                {"--fill", "", "FOLDER",
                 "copy the content of FOLDER into the handset (default: a small sample)", Word::LocalPath},
                {"--free", "", "BLOCKS", "free blocks of 512 bytes (default 131072)"},
                {"--vendor", "", "HEX", "USB vendor id (default 05C6)"},
                {"--product", "", "HEX", "USB product id (default 3197)"},
                {"--bus", "", "NAME", "name of the USB device (default 1-1.2)"},
                {"--latency", "", "MICROSECONDS", "delay of every response (default 0)"},
                {"--requests", "", nullptr, "print every request as it arrives"},
                {"--control", "", "SOCKET", "accept commands on a unix socket", Word::LocalPath},
            },
        .remarks =
            "Prints \"ready TTY\" once it answers requests. SIGINT, SIGTERM or the command quit ends it. "
            "Commands come from standard input and from SOCKET. The output of a command ends with \"ok\" or "
            "\"error: REASON\".\n\nCommands:\n\n" +
            Console::Help() + "\nACTION of misbehave (N: value=, PACKETS: packet=):\n\n" + FaultHelp(),
        .withoutCommand = Run,
        .needsHandset = false,
    };
}

} // namespace

int main(int count, char** words) {
    return tools::RunProgram(MakeProgram(), count, words);
}
