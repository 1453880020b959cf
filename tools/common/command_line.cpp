#include "common/command_line.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>

#include "common/documents.h"
#include "common/quiet.h"
#include "common/terminal.h"
#include "common/text.h"

namespace tools {
namespace {

using Options = std::vector<const Option*>;

void Append(Options& all, const std::vector<Option>& more) {
    for (const Option& option : more)
        all.push_back(&option);
}

bool IsOption(const std::string& word) {
    return word.size() > 1 && word[0] == '-'; // "-" alone is standard input or output
}

std::string WithoutDashes(const std::string& word) {
    return word.substr(word.starts_with("--") ? 2 : 1);
}

const Option* Named(const Options& options, const std::string& name) {
    const auto found = std::ranges::find_if(
        options, [&](const Option* option) { return WithoutDashes(option->name) == name; });
    return found == options.end() ? nullptr : *found;
}

const Option* Lettered(const Options& options, char letter) {
    const auto found = std::ranges::find_if(
        options, [&](const Option* option) { return std::strchr(option->letters, letter) != nullptr; });
    return found == options.end() ? nullptr : *found;
}

/// A word of the command line that holds options, parsed.
struct OptionWord {
    Options options;                  // empty: one of them is unknown
    std::optional<std::string> value; // of the last option, if it is in the same word

    bool NeedsNext() const { return !options.empty() && options.back()->value && !value; }
};

OptionWord ParseOptions(const std::string& word, const Options& known) {
    OptionWord result;
    const size_t equals = word.find('=');
    const std::string name = WithoutDashes(word.substr(0, equals));
    if (const Option* option = name.size() > 1 || word.starts_with("--") ? Named(known, name) : nullptr) {
        result.options = {option};
        if (equals != std::string::npos)
            result.value = word.substr(equals + 1);
        return result;
    }
    for (size_t i = 1; i < word.size() && !word.starts_with("--"); ++i) {
        const Option* option = Lettered(known, word[i]);
        if (!option)
            return {};
        result.options.push_back(option);
        if (option->value && i + 1 < word.size()) {
            result.value = word.substr(i + 1);
            break;
        }
    }
    return result;
}

/// Parses the words of a command line and runs the command. Throws Failure (wrong usage).
class CommandLine {
public:
    CommandLine(const Program& program, std::vector<std::string> words)
        : m_program(program), m_words(std::move(words)) {}

    void Run() {
        FindCommand();
        TakeWords();
        if (PrintedDocument())
            return;
        RequireValidUsage();
        SetQuiet(m_job.Has("--quiet"));
        if (m_command)
            m_command->run(m_job);
        else
            m_program.withoutCommand(m_job);
    }

private:
    [[noreturn]] void Misused(const std::string& what) const {
        throw Failure(what + " (see " + m_program.name + " --help)", Status::Usage);
    }

    Options OptionsOfAll() const {
        Options all;
        for (const Command& command : m_program.commands)
            Append(all, command.options);
        Append(all, m_program.options);
        Append(all, StandardOptions());
        return all;
    }

    Options OptionsHere() const {
        Options here;
        if (m_command)
            Append(here, m_command->options);
        Append(here, m_program.options);
        Append(here, StandardOptions());
        return here;
    }

    /// Returns the indices of the words that are neither options nor their values. The command is not known
    /// yet, so the options of all commands are recognized.
    std::vector<size_t> PlainWords() const {
        const Options all = OptionsOfAll();
        std::vector<size_t> plain;
        bool hasOptions = true;
        for (size_t i = 0; i < m_words.size(); ++i) {
            if (!hasOptions || !IsOption(m_words[i]))
                plain.push_back(i);
            else if (m_words[i] == "--")
                hasOptions = false;
            else if (ParseOptions(m_words[i], all).NeedsNext())
                ++i;
        }
        return plain;
    }

    bool IsCalled(const Command& command, const std::string& name) const {
        return command.name == name ||
               (" " + std::string(command.aliases) + " ").find(" " + name + " ") != std::string::npos;
    }

    /// Finds the command in the first words that are not options, and removes those words. "help" before it
    /// is read as --help.
    void FindCommand() {
        std::vector<size_t> plain = PlainWords();
        if (!plain.empty() && m_words[plain[0]] == "help" && !m_program.commands.empty()) {
            m_words[plain[0]] = "--help";
            plain.erase(plain.begin());
        }
        if (plain.empty() || m_program.commands.empty())
            return;
        const std::string one = m_words[plain[0]];
        const std::string two = plain.size() > 1 ? one + " " + m_words[plain[1]] : one;
        for (const Command& command : m_program.commands) {
            if (one.empty() || (!IsCalled(command, one) && command.name != two))
                continue;
            m_command = &command;
            if (command.name == two && plain.size() > 1 && two != one)
                m_words.erase(m_words.begin() + static_cast<ptrdiff_t>(plain[1]));
            m_words.erase(m_words.begin() + static_cast<ptrdiff_t>(plain[0]));
            return;
        }
        m_unknown = one;
    }

    /// Sorts the words into options and arguments.
    void TakeWords() {
        const Options here = OptionsHere();
        bool hasOptions = true;
        for (size_t i = 0; i < m_words.size(); ++i) {
            if (!hasOptions || !IsOption(m_words[i]))
                m_job.arguments.push_back(m_words[i]);
            else if (m_words[i] == "--")
                hasOptions = false;
            else
                TakeOptions(i, here);
        }
    }

    /// Parses the options in the word at index `i`. Advances `i` if the next word is the value of the last
    /// one.
    void TakeOptions(size_t& i, const Options& here) {
        const std::string& word = m_words[i];
        OptionWord taken = ParseOptions(word, here);
        if (taken.options.empty() && m_problem.empty())
            m_problem = ParseOptions(word, OptionsOfAll()).options.empty() || !m_command
                            ? "unknown option " + Quoted(word)
                            : std::string(m_command->name) + " has no option " + word;
        if (taken.options.empty())
            return;
        const Option& last = *taken.options.back();
        if (taken.NeedsNext() && i + 1 < m_words.size())
            taken.value = m_words[++i];
        if (m_problem.empty() && last.value && !taken.value)
            m_problem = std::string(last.name) + " needs a value (" + last.value + ")";
        if (m_problem.empty() && !last.value && taken.value)
            m_problem = std::string(last.name) + " takes no value";
        for (const Option* option : taken.options)
            m_job.options[option->name] = "";
        m_job.options[last.name] = taken.value.value_or("");
    }

    /// Prints the help, version, manual page or completion script if one was requested. Returns false if not.
    bool PrintedDocument() const {
        std::string text;
        if (m_job.Has("--help"))
            text = m_command ? CommandHelp(m_program, *m_command) : ProgramHelp(m_program);
        else if (m_job.Has("--version"))
            text = VersionLine(m_program);
        else if (m_job.Has("--man"))
            text = ManualPage(m_program);
        else if (m_job.Has("--completion"))
            text = BashCompletion(m_program);
        std::fwrite(text.data(), 1, text.size(), stdout);
        return !text.empty();
    }

    void RequireValidUsage() const {
        if (!m_problem.empty())
            Misused(m_problem);
        if (!m_unknown.empty())
            Misused("unknown command " + Quoted(m_unknown));
        const size_t count = m_job.arguments.size();
        if (!m_command && count > 0)
            Misused("unknown argument " + Quoted(m_job.arguments[0]));
        if (!m_command && !m_program.withoutCommand)
            Misused("no command");
        if (m_command && (count < m_command->least || count > m_command->most))
            Misused("usage: " + UsageOf(m_program, *m_command));
        if (std::ranges::find(m_job.arguments, "") != m_job.arguments.end())
            Misused("an empty argument");
    }

    const Program& m_program;
    std::vector<std::string> m_words;
    const Command* m_command = nullptr;
    std::string m_unknown; // a word in place of a command
    std::string m_problem; // the first error in an option
    Job m_job;
};

} // namespace

int RunProgram(const Program& program, int count, char** words) {
    LetWritesFail();
    ShowUtf8();
    Status status = Status::Success;
    std::string reason;
    try {
        CommandLine(program, CommandLineWords(count, words)).Run();
    } catch (const Failure& failure) {
        status = failure.ExitStatus();
        reason = failure.what();
    } catch (const std::exception& error) {
        status = Status::Failed;
        reason = error.what();
    }
    if ((std::fflush(stdout) != 0 || std::ferror(stdout) != 0) && status == Status::Success) {
        status = Status::Failed;
        reason = kOutputFailure;
    }
    if (status != Status::Success)
        std::fprintf(stderr, "%s: %s\n", program.name, reason.c_str());
    return static_cast<int>(status);
}

} // namespace tools
