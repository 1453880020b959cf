#include "common/documents.h"
#include "common/text.h"

namespace tools {
namespace {

std::string OptionLines(const std::vector<Option>& options, size_t indent) {
    std::string text;
    for (const Option& option : options)
        text += Aligned(FullName(option), option.purpose, indent);
    return text;
}

} // namespace

const char* Version() {
    return QUILLET_VERSION;
}

std::string VersionLine(const Program& program) {
    return std::string(program.name) + " " + Version() + "\n";
}

std::string UsageOf(const Program& program, const Command& command) {
    return std::string(program.name) + " " + FullName(command);
}

std::string FullName(const Command& command) {
    const std::string name = command.name;
    return *command.arguments ? name + " " + command.arguments : name;
}

std::string FullName(const Option& option) {
    std::string text;
    for (const char* letter = option.letters; *letter; ++letter)
        text += std::string("-") + *letter + ", ";
    text += option.name;
    return option.value ? text + " " + option.value : text;
}

std::string ExitStatusText(const Program& program) {
    std::string text =
        "Exit status: 0 success; 1 failed, the reason is on standard error; 2 wrong usage, nothing was tried";
    if (program.needsHandset)
        text += "; 3 no handset answered when the command began, nothing was done";
    return text + ".";
}

std::string ProgramHelp(const Program& program) {
    const char* commands = program.commands.empty() ? ""
                           : program.withoutCommand ? " [COMMAND ...]"
                                                    : " COMMAND ...";
    std::string text = std::string("Usage: ") + program.name + " [OPTIONS]" + commands + "\n\n";
    for (const Command& command : program.commands) {
        text += Aligned(FullName(command), command.purpose, 2);
        text += OptionLines(command.options, 6);
    }
    if (!program.commands.empty())
        text += "\nOptions of every command:\n";
    text += OptionLines(program.options, 2) + OptionLines(StandardOptions(), 2);
    return text + Aligned("--", "everything after this is an argument, even if it begins with a dash", 2) +
           "\n" + Wrapped(program.remarks) + "\n" + Wrapped(ExitStatusText(program));
}

std::string CommandHelp(const Program& program, const Command& command) {
    std::string text =
        "Usage: " + UsageOf(program, command) + "\n\n" + Aligned(command.name, command.purpose, 2);
    text += OptionLines(command.options, 6);
    if (*command.aliases)
        text += "\nOther names: " + std::string(command.aliases) + "\n";
    if (*command.details)
        text += "\n" + Wrapped(command.details);
    return text + "\nOptions of every command:\n" + OptionLines(program.options, 2) +
           OptionLines(StandardOptions(), 2);
}

} // namespace tools
