// qdiag: the phone's diagnostic commands on the command line.
#include "common/command_line.h"
#include "qdiag/commands.h"

namespace tools::qdiag {
namespace {

const Program kProgram = {
    .name = "qdiag",
    .purpose = "diagnostic commands of a handset",
    .commands =
        {
            {"info",
             "",
             "print who the handset is, and the figures of its file system",
             0,
             0,
             {{"--json", "", nullptr, "as a JSON object"}},
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
             "A backup holds the first element of items that are arrays.",
             "",
             {Word::LocalPath}},
            {"nv restore",
             "FILE",
             "write those items of such a file that differ",
             1,
             1,
             {{"--read-only", "", "A,B", "items that may turn out to be read-only"},
              {"--yes", "y", nullptr, "write without asking"}},
             NvRestoreCommand,
             "",
             "",
             {Word::LocalPath}},
            {"log",
             "[CODE...]",
             "show log records, messages and events as they come",
             0,
             1000,
             {{"--messages", "", "A,B", "all messages of these subsystems too"},
              {"--events", "", nullptr, "event reports too"},
              {"--count", "", "N", "end after so many packets"},
              {"--seconds", "", "N", "end after that time"},
              {"--hex", "", nullptr, "print the bytes of each packet too"}},
             LogCommand,
             "At its end it sets the handset's log masks back and switches messages and events off."},
            {"replay",
             "FILE",
             "show the packets of a recorded session",
             1,
             1,
             {{"--hex", "", nullptr, "print the bytes of each packet too"}},
             ReplayCommand,
             "",
             "",
             {Word::LocalPath}},
            {"ports", "", "list the serial ports and which of them answer", 0, 0, {}, PortsCommand},
        },
    .options =
        {
            {"--port", "", "N", "the handset on port COM N (default: the first port on which one answers)",
             Word::Any, "", true},
            {"--timeout", "", "MS", "how long to wait for an answer, in milliseconds (default 4000)"},
        },
    .remarks = "Numbers are decimal, or hex with 0x.\n",
};

} // namespace
} // namespace tools::qdiag

int main(int count, char** words) {
    return tools::RunProgram(tools::qdiag::kProgram, count, words);
}
