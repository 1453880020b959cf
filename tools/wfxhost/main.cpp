// wfxhost: loads a file-system plug-in as a file manager does and drives it from the command line.
#include <cstdio>
#include <exception>

#include "wfxhost/commands.h"
#include "wfxhost/demo.h"
#include "wfxhost/failure.h"
#include "wfxhost/system.h"

namespace wfxhost {
namespace {

struct CommandLine {
    std::string plugin = ProgramFolder() + "/" + DefaultPluginName();
    bool help = false;
    const Command* command = nullptr; // null: the demonstration
    Job job;
};

std::string Usage() {
    std::string text = "Usage: wfxhost [--plugin FILE] [--force] [COMMAND ...]\n\n";
    for (const Command& command : AllCommands()) {
        const std::string call = std::string(command.name) + " " + command.arguments;
        text +=
            "  " + call + std::string(call.size() < 22 ? 22 - call.size() : 1, ' ') + command.purpose + "\n";
    }
    text +=
        "\n"
        "Without a command: a demonstration, on a simulated handset when none is attached.\n"
        "Paths on the phone are written with '/'.\n\n"
        "  --plugin FILE  the plug-in to load (default: " +
        DefaultPluginName() +
        " beside this program)\n"
        "  --force        replace an existing file (get, put, mv)\n"
        "  --help         this text\n"
        "  --             what follows are no options\n\n"
        "Exit status: 0 success; 1 failed, the reason is on standard error; 2 wrong usage;\n"
        "3 no handset answers, nothing was done.\n";
    return text;
}

[[noreturn]] void Misused(const std::string& what) {
    throw Failure(what + " (see wfxhost --help)", Status::Usage);
}

/// Takes one option. `i` is its place, moved to the option's value where it has one.
void TakeOption(CommandLine& line, const std::vector<std::string>& words, size_t& i) {
    if (words[i] == "--help" || words[i] == "-h")
        line.help = true;
    else if (words[i] == "--force")
        line.job.force = true;
    else if (words[i] == "--plugin" && i + 1 < words.size())
        line.plugin = words[++i];
    else
        Misused(words[i] == "--plugin" ? "--plugin needs a file" : "unknown option " + Quoted(words[i]));
}

CommandLine Parse(const std::vector<std::string>& words) {
    CommandLine line;
    std::vector<std::string> plain;
    bool options = true;
    for (size_t i = 0; i < words.size(); ++i) {
        if (options && words[i] == "--")
            options = false;
        else if (options && words[i].size() > 1 && words[i][0] == '-')
            TakeOption(line, words, i);
        else
            plain.push_back(words[i]);
    }
    if (line.help || plain.empty())
        return line;
    for (const Command& command : AllCommands()) {
        if (plain[0] == command.name)
            line.command = &command;
    }
    if (!line.command)
        Misused("unknown command " + Quoted(plain[0]));
    line.job.arguments.assign(plain.begin() + 1, plain.end());
    const size_t count = line.job.arguments.size();
    if (count < line.command->least || count > line.command->most)
        Misused(std::string("usage: wfxhost ") + line.command->name + " " + line.command->arguments);
    for (const std::string& argument : line.job.arguments) {
        if (argument.empty())
            Misused("an empty path");
    }
    return line;
}

void Run(const CommandLine& line) {
    if (line.help) {
        std::printf("%s", Usage().c_str());
        return;
    }
    PluginFile plugin(line.plugin);
    Session session(plugin);
    if (line.command)
        line.command->run(session, line.job);
    else
        Demonstrate(session);
}

} // namespace
} // namespace wfxhost

int main(int count, char** words) {
    using wfxhost::Status;
    Status status = Status::Success;
    std::string reason;
    try {
        wfxhost::Run(wfxhost::Parse({words + 1, words + count}));
    } catch (const wfxhost::Failure& failure) {
        status = failure.ExitStatus();
        reason = failure.what();
    } catch (const std::exception& error) {
        status = Status::Failed;
        reason = error.what();
    }
    std::fflush(stdout);
    if (status != Status::Success)
        std::fprintf(stderr, "wfxhost: %s\n", reason.c_str());
    return static_cast<int>(status);
}
