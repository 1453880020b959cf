// qdiag: the phone's diagnostic commands on the command line.
#include "qdiag/commands.h"

namespace tools::qdiag {
namespace {

const Program kProgram = {
    .name = "qdiag",
    .commands =
        {
            {"info", "", "who the handset is, and its file system", 0, 0, {"--json"}, InfoCommand},
            {"nv read", "ITEM [LENGTH]", "prints an NV item in hex", 1, 2, {}, NvReadCommand},
            {"nv write", "ITEM HEX", "writes an NV item", 2, 2, {}, NvWriteCommand},
            {"nv backup",
             "FILE",
             "copies NV items into a text file",
             1,
             1,
             {"--items", "--force"},
             NvBackupCommand},
            {"nv restore",
             "FILE",
             "writes the items of such a file that differ",
             1,
             1,
             {"--read-only", "--yes"},
             NvRestoreCommand},
            {"log",
             "[CODE...]",
             "shows log records, messages and events as they come",
             0,
             1000,
             {"--messages", "--events", "--count", "--seconds", "--hex"},
             LogCommand},
            {"replay", "FILE", "shows the packets of a recorded session", 1, 1, {"--hex"}, ReplayCommand},
            {"ports", "", "lists the serial ports and which answer", 0, 0, {}, PortsCommand},
        },
    .options =
        {
            {"--port", "N", "the handset on port COM N (default: the first port on which one answers)", true},
            {"--timeout", "MS", "how long to wait for an answer, in milliseconds (default 4000)", true},
            {"--json", nullptr, "info: as a JSON object"},
            {"--items", "A-B", "nv backup: only these items (default: all 65536)"},
            {"--force", nullptr, "nv backup: replaces an existing file"},
            {"--read-only", "A,B", "nv restore: items that may turn out to be read-only"},
            {"--yes", nullptr, "nv restore: writes without asking"},
            {"--messages", "A,B", "log: all messages of these subsystems too"},
            {"--events", nullptr, "log: event reports too"},
            {"--count", "N", "log: ends after so many packets"},
            {"--seconds", "N", "log: ends after that time"},
            {"--hex", nullptr, "log, replay: the bytes of each packet too"},
        },
    .remarks =
        "Numbers are decimal, or hex with 0x. A backup holds the first element of items that are arrays.\n"
        "log sets the handset's log masks back at its end and switches messages and events off.\n",
};

} // namespace
} // namespace tools::qdiag

int main(int count, char** words) {
    return tools::RunProgram(tools::qdiag::kProgram, count, words);
}
