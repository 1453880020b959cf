// qdiag: the phone's diagnostic commands on the command line.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <span>

#include "qdiag/failure.h"
#include "qdiag/job.h"
#include "qdiag/output.h"

namespace qdiag {
namespace {

const std::vector<Command>& AllCommands() {
    static const std::vector<Command> commands = {
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
    };
    return commands;
}

struct Option {
    const char* name;
    const char* value; // what it is, null for a switch
    const char* purpose;
};

constexpr Option kOptions[] = {
    {"--port", "N", "the handset on port COM N (default: the first port on which one answers)"},
    {"--timeout", "MS", "how long to wait for an answer, in milliseconds (default 4000)"},
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
};

const std::vector<std::string> kConnectionOptions = {"--port", "--timeout"};

std::string Aligned(std::string text, const char* explanation) {
    constexpr size_t kColumn = 24;
    text.resize(std::max(text.size() + 1, kColumn), ' ');
    return "  " + text + explanation + "\n";
}

std::string Usage() {
    std::string text = "Usage: qdiag [OPTIONS] COMMAND ...\n\n";
    for (const Command& command : AllCommands())
        text += Aligned(std::string(command.name) + " " + command.arguments, command.purpose);
    text += "\n";
    for (const Option& option : kOptions)
        text +=
            Aligned(option.name + std::string(option.value ? " " : "") + (option.value ? option.value : ""),
                    option.purpose);
    return text +
           "\nNumbers are decimal, or hex with 0x. A backup holds the first element of items that are arrays."
           "\nlog sets the handset's log masks back at its end and switches messages and events off."
           "\n\nExit status: 0 success; 1 failed, the reason is on standard error; 2 wrong usage;"
           "\n3 no handset answers, nothing was done.\n";
}

[[noreturn]] void Misused(const std::string& what) {
    throw Failure(what + " (see qdiag --help)", Status::Usage);
}

/// Takes one option. `i` is its place, moved to the option's value where it has one.
void TakeOption(Job& job, std::span<const std::string> words, size_t& i) {
    const std::string& name = words[i];
    const auto* option =
        std::ranges::find_if(kOptions, [&](const Option& known) { return known.name == name; });
    if (option == std::end(kOptions))
        Misused("unknown option " + Quoted(name));
    if (!option->value) {
        job.options[name];
        return;
    }
    if (i + 1 >= words.size())
        Misused(name + " needs a value (" + option->value + ")");
    job.options[name] = words[++i];
}

/// Finds the command by the words in front of its arguments, and takes those words away.
const Command& TakeCommand(std::vector<std::string>& words) {
    for (const Command& command : AllCommands()) {
        const std::string name = command.name;
        const bool hasTwoWords = name.find(' ') != std::string::npos;
        if (words.size() < (hasTwoWords ? 2 : 1) ||
            (hasTwoWords ? words[0] + " " + words[1] : words[0]) != name)
            continue;
        words.erase(words.begin(), words.begin() + (hasTwoWords ? 2 : 1));
        return command;
    }
    Misused("unknown command " + Quoted(words[0]));
}

void Check(const Command& command, const Job& job) {
    const size_t count = job.arguments.size();
    if (count < command.least || count > command.most)
        Misused(std::string("usage: qdiag ") + command.name + " " + command.arguments);
    if (std::ranges::find(job.arguments, "") != job.arguments.end())
        Misused("an empty argument");
    for (const auto& [name, value] : job.options) {
        if (std::ranges::find(command.options, name) == command.options.end() &&
            std::ranges::find(kConnectionOptions, name) == kConnectionOptions.end())
            Misused(std::string(command.name) + " has no option " + name);
    }
}

void Run(std::span<const std::string> words) {
    Job job;
    bool hasOptions = true;
    for (size_t i = 0; i < words.size(); ++i) {
        if (hasOptions && (words[i] == "--help" || words[i] == "-h")) {
            std::printf("%s", Usage().c_str());
            return;
        }
        if (hasOptions && words[i] == "--")
            hasOptions = false;
        else if (hasOptions && words[i].size() > 1 && words[i][0] == '-')
            TakeOption(job, words, i);
        else
            job.arguments.push_back(words[i]);
    }
    if (job.arguments.empty())
        Misused("no command");
    const Command& command = TakeCommand(job.arguments);
    Check(command, job);
    command.run(job);
}

} // namespace
} // namespace qdiag

int main(int count, char** words) {
    using qdiag::Status;
    Status status = Status::Success;
    std::string reason;
    try {
        qdiag::Run(std::vector<std::string>(words + 1, words + count));
    } catch (const qdiag::Failure& failure) {
        status = failure.ExitStatus();
        reason = failure.what();
    } catch (const std::exception& error) {
        status = Status::Failed;
        reason = error.what();
    }
    std::fflush(stdout);
    if (status != Status::Success)
        std::fprintf(stderr, "qdiag: %s\n", reason.c_str());
    return static_cast<int>(status);
}
