#include "common/command_line.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <exception>

#include "common/text.h"

namespace tools {
namespace {

constexpr const char* kHelp = "--help";

bool IsHelp(const std::string& word) {
    return word == kHelp || word == "-h";
}

std::string Usage(const Program& program) {
    const std::string command = program.withoutCommand ? "[COMMAND ...]" : "COMMAND ...";
    std::string text = std::string("Usage: ") + program.name + " [OPTIONS] " + command + "\n\n";
    for (const Command& known : program.commands)
        text += Aligned(std::string(known.name) + " " + known.arguments, known.purpose);
    text += "\n";
    for (const Option& option : program.options)
        text += Aligned(std::string(option.name) + (option.value ? std::string(" ") + option.value : ""),
                        option.purpose);
    return text + Aligned(kHelp, "this text") + Aligned("--", "what follows are no options") + "\n" +
           program.remarks +
           "\nExit status: 0 success; 1 failed, the reason is on standard error; 2 wrong usage, nothing was\n"
           "tried; 3 no handset answered when the command began, nothing was done.\n";
}

/// What the words ask a program for. Throws Failure (wrong usage).
class CommandLine {
public:
    CommandLine(const Program& program, std::vector<std::string> words)
        : m_program(program), m_words(std::move(words)) {}

    void Run() {
        if (!TakeWords()) {
            std::printf("%s", Usage(m_program).c_str());
            return;
        }
        if (m_job.arguments.empty() && m_program.withoutCommand) {
            RequireOptions("the demonstration", {});
            return m_program.withoutCommand(m_job);
        }
        const Command& command = TakeCommand();
        Check(command);
        command.run(m_job);
    }

private:
    [[noreturn]] void Misused(const std::string& what) const {
        throw Failure(what + " (see " + m_program.name + " --help)", Status::Usage);
    }

    /// Sorts the words into options and arguments; false when the help text is asked for.
    bool TakeWords() {
        bool hasOptions = true;
        for (size_t i = 0; i < m_words.size(); ++i) {
            if (hasOptions && IsHelp(m_words[i]))
                return false;
            if (hasOptions && m_words[i] == "--")
                hasOptions = false;
            else if (hasOptions && m_words[i].size() > 1 && m_words[i][0] == '-')
                TakeOption(i);
            else
                m_job.arguments.push_back(m_words[i]);
        }
        return true;
    }

    /// Takes one option. `i` is its place, moved to the option's value where it has one.
    void TakeOption(size_t& i) {
        const std::string& name = m_words[i];
        const auto option = std::ranges::find(m_program.options, name, &Option::name);
        if (option == m_program.options.end())
            Misused("unknown option " + Quoted(name));
        std::string& value = m_job.options[name];
        if (!option->value)
            return;
        if (i + 1 >= m_words.size())
            Misused(name + " needs a value (" + option->value + ")");
        value = m_words[++i];
    }

    /// Finds the command by the words in front of its arguments, and takes those words away.
    const Command& TakeCommand() {
        std::vector<std::string>& words = m_job.arguments;
        if (words.empty())
            Misused("no command");
        const std::string two = words.size() > 1 ? words[0] + " " + words[1] : "";
        for (const Command& command : m_program.commands) {
            if (command.name != words[0] && command.name != two)
                continue;
            words.erase(words.begin(), words.begin() + (command.name == two ? 2 : 1));
            return command;
        }
        Misused("unknown command " + Quoted(words[0]));
    }

    void RequireOptions(const std::string& who, const std::vector<std::string>& taken) const {
        for (const auto& [name, value] : m_job.options) {
            const auto option = std::ranges::find(m_program.options, name, &Option::name);
            if (!option->isForAll && std::ranges::find(taken, name) == taken.end())
                Misused(std::string(who).append(" has no option ").append(name));
        }
    }

    void Check(const Command& command) const {
        const size_t count = m_job.arguments.size();
        if (count < command.least || count > command.most)
            Misused(std::string("usage: ") + m_program.name + " " + command.name + " " + command.arguments);
        if (std::ranges::find(m_job.arguments, "") != m_job.arguments.end())
            Misused("an empty argument");
        RequireOptions(command.name, command.options);
    }

    const Program& m_program;
    const std::vector<std::string> m_words;
    Job m_job;
};

} // namespace

std::string Job::Value(const std::string& option, const std::string& otherwise) const {
    const auto found = options.find(option);
    return found == options.end() ? otherwise : found->second;
}

unsigned long Job::Number(const std::string& option, unsigned long limit, unsigned long otherwise) const {
    return Has(option) ? ParseNumber(Value(option), limit, option) : otherwise;
}

std::vector<unsigned short> Job::Numbers(const std::string& option) const {
    std::vector<unsigned short> numbers;
    if (!Has(option))
        return numbers;
    const std::string text = Value(option);
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find(',', begin), text.size());
        numbers.push_back(
            static_cast<unsigned short>(ParseNumber(text.substr(begin, end - begin), 0xFFFF, option)));
        begin = end + 1;
    }
    return numbers;
}

unsigned long ParseNumber(const std::string& text, unsigned long limit, const std::string& what) {
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    const char* const begin = text.data() + (isHex ? 2 : 0);
    const char* const end = text.data() + text.size();
    unsigned long number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number, isHex ? 16 : 10);
    if (error != std::errc() || stop != end || number > limit)
        throw Failure(what + ": " + Quoted(text) + " is no number from 0 to " + std::to_string(limit),
                      Status::Usage);
    return number;
}

int RunProgram(const Program& program, int count, char** words) {
    Status status = Status::Success;
    std::string reason;
    try {
        CommandLine(program, {words + 1, words + count}).Run();
    } catch (const Failure& failure) {
        status = failure.ExitStatus();
        reason = failure.what();
    } catch (const std::exception& error) {
        status = Status::Failed;
        reason = error.what();
    }
    if ((std::fflush(stdout) != 0 || std::ferror(stdout) != 0) && status == Status::Success) {
        status = Status::Failed;
        reason = "the output could not be written";
    }
    if (status != Status::Success)
        std::fprintf(stderr, "%s: %s\n", program.name, reason.c_str());
    return static_cast<int>(status);
}

} // namespace tools
