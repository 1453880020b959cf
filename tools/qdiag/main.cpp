// qdiag: the phone's diagnostic commands on the command line.
#include "common/command_line.h"
#include "qdiag/commands.h"

namespace tools::qdiag {
namespace {

const Program kProgram = {
    .name = "qdiag",
    .purpose = "send diagnostic commands to a phone",
    .commands =
        {
            {"info",
             "",
             "print the phone's identity and file-system figures",
             0,
             0,
             {{"--json", "", nullptr, "print a JSON object"}},
             InfoCommand},
            {"nv read", "ITEM [LENGTH]", "print an NV item in hex", 1, 2, {}, NvReadCommand},
            {"nv write", "ITEM HEX", "write an NV item", 2, 2, {}, NvWriteCommand},
            {"nv backup",
             "FILE",
             "copy NV items into a text file",
             1,
             1,
             {{"--items", "", "A-B", "only these items (default: all 65536)"},
              {"--force", "f", nullptr, "replace an existing file"}},
             NvBackupCommand,
             "Of items that are arrays, a backup contains only the first element.",
             "",
             {Word::LocalPath}},
            {"nv restore",
             "FILE",
             "write the items of a backup that differ from the phone's",
             1,
             1,
             {{"--read-only", "", "A,B", "items that may be read-only"},
              {"--yes", "y", nullptr, "write without asking"}},
             NvRestoreCommand,
             "",
             "",
             {Word::LocalPath}},
            {"log",
             "[CODE...]",
             "show log records, messages and events as they arrive",
             0,
             1000,
             {{"--messages", "", "A,B", "also all messages of these subsystems"},
              {"--events", "", nullptr, "also event reports"},
              {"--count", "", "N", "stop after N packets"},
              {"--seconds", "", "N", "stop after N seconds"},
              {"--hex", "", nullptr, "also print the bytes of each packet"}},
             LogCommand,
             "At the end, the phone's log masks are restored, and messages and events are switched off."},
            {"replay",
             "FILE",
             "show the packets of a recorded session",
             1,
             1,
             {{"--hex", "", nullptr, "also print the bytes of each packet"}},
             ReplayCommand,
             "",
             "",
             {Word::LocalPath}},
            {"ports", "", "list the serial ports and those on which a phone answers", 0, 0, {}, PortsCommand},
        },
    .options =
        {
            {"--port", "", "N", "use the phone on port COM N (default: the first port on which one answers)",
             Word::Any, "", true},
            {"--timeout", "", "MS", "how long to wait for a response, in milliseconds (default 4000)"},
        },
    .remarks = "Numbers are decimal, or hex with 0x.\n",
};

} // namespace
} // namespace tools::qdiag

int main(int count, char** words) {
    return tools::RunProgram(tools::qdiag::kProgram, count, words);
}
