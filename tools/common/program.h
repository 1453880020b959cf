// A program's commands and options. Each program has one table of them: it defines the command line, and the
// help texts, the manual page and the completion script are generated from it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "common/failure.h"

namespace tools {

/// A parsed command line.
struct Job {
    std::vector<std::string> arguments;         // of the command; none is empty
    std::map<std::string, std::string> options; // by Option::name; the value of a switch is empty

    bool Has(const std::string& option) const { return options.contains(option); }
    /// Returns an option's value, or `otherwise` when the option was not used.
    std::string Value(const std::string& option, const std::string& otherwise = "") const;
    /// Returns an option's value as ParseNumber does, or `otherwise` when the option was not used.
    unsigned long Number(const std::string& option, unsigned long limit, unsigned long otherwise) const;
    /// Returns the numbers in an option's value, which are separated by commas.
    std::vector<unsigned short> Numbers(const std::string& option) const;
};

/// Parses a number from 0 to `limit`, decimal or hex with "0x". Any other text throws Failure (wrong usage),
/// whose message begins with `what`.
unsigned long ParseNumber(const std::string& text, unsigned long limit, const std::string& what);

/// The kind of a word on the command line, for the completion.
enum class Word { Any, LocalPath, PhonePath };

/// One option. One dash or two may precede its long name, and "=VALUE" may follow it.
struct Option {
    const char* name;         // "--json"; also the key in Job::options
    const char* letters;      // the short forms: "rR" for -r and -R; may be empty
    const char* value;        // the value's name in the help, null for a switch
    const char* purpose;      // what the option does; begins with a lower-case letter, no full stop
    Word word = Word::Any;    // the kind of its value
    const char* choices = ""; // all possible values, separated by blanks; empty: not a fixed set
    bool isListers = false;   // Program::lister gets it, too: it selects the phone or how to reach it
};

/// One command.
struct Command {
    const char* name;      // one or two words
    const char* arguments; // as the help shows them: "PHONE [LOCAL]"
    const char* purpose;   // begins with a lower-case letter, no full stop
    size_t least;          // number of arguments
    size_t most;
    std::vector<Option> options; // besides those of all commands
    /// Runs the command. Returns when it succeeded, otherwise throws Failure.
    void (*run)(const Job& job);
    const char* details = "";     // only for the command's own help: paragraphs, see Wrapped
    const char* aliases = "";     // other names, separated by blanks
    std::vector<Word> words = {}; // the kinds of its arguments; the last one is for the rest, too
};

constexpr size_t kAnyNumber = static_cast<size_t>(-1);

struct Program {
    const char* name;
    const char* purpose; // one line for the manual page; begins with a lower-case letter, no full stop
    std::vector<Command> commands;                // may be empty
    std::vector<Option> options;                  // of all commands, besides --help and the like
    std::string remarks;                          // the end of the help text: paragraphs, see Wrapped
    void (*withoutCommand)(const Job&) = nullptr; // null: a command is required
    /// Command and options that print a folder of the phone for the completion, which appends the path. Each
    /// name ends with a zero byte; a '/' follows the names of folders. With it, every Word::PhonePath is
    /// completed. Empty: none is.
    const char* lister = "";
    bool needsHandset = true; // exit status 3 can occur
};

/// The options that every program has.
const std::vector<Option>& StandardOptions();

} // namespace tools
