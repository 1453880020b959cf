// What a program with commands offers. One table per program: the command line is read by it, and the help
// texts, the manual page and the completion are made from it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "common/failure.h"

namespace tools {

/// What the command line asks for.
struct Job {
    std::vector<std::string> arguments;         // of the command; none is empty
    std::map<std::string, std::string> options; // by Option::name; the value of a switch is empty

    bool Has(const std::string& option) const { return options.contains(option); }
    /// Value returns an option's value, `otherwise` when the option was not used.
    std::string Value(const std::string& option, const std::string& otherwise = "") const;
    /// Number returns an option's value as ParseNumber does, `otherwise` when the option was not used.
    unsigned long Number(const std::string& option, unsigned long limit, unsigned long otherwise) const;
    /// Numbers returns an option's value that is several numbers with commas between them.
    std::vector<unsigned short> Numbers(const std::string& option) const;
};

/// ParseNumber reads a number, decimal or with "0x", from 0 to `limit`. Throws Failure (wrong usage), which
/// calls it `what`, for any other text.
unsigned long ParseNumber(const std::string& text, unsigned long limit, const std::string& what);

/// What may stand in one place of the command line, for the completion.
enum class Word { Any, LocalPath, PhonePath };

/// One option. Long names are understood with one dash and with two, and with "=VALUE".
struct Option {
    const char* name;         // "--json"; also the key in Job::options
    const char* letters;      // the short forms: "rR" for -r and -R; may be empty
    const char* value;        // the value's name in the help, null for a switch
    const char* purpose;      // what the option does; begins with a small letter, no full stop
    Word word = Word::Any;    // what its value is
    const char* choices = ""; // all values that there are, with blanks between them; empty: others
    bool isListers = false;   // the lister gets it too: it says which phone, or how to reach it
};

/// One command.
struct Command {
    const char* name;      // one or two words
    const char* arguments; // as the help shows them: "PHONE [LOCAL]"
    const char* purpose;   // begins with a small letter, no full stop
    size_t least;          // number of arguments
    size_t most;
    std::vector<Option> options; // besides those that every command takes
    /// Carries the command out. Returns after a success and throws Failure otherwise.
    void (*run)(const Job& job);
    const char* details = "";     // for the help of the command alone: paragraphs, see Wrapped
    const char* aliases = "";     // other names, with blanks between them
    std::vector<Word> words = {}; // what its arguments are; the last one stands for the rest
};

constexpr size_t kAnyNumber = static_cast<size_t>(-1);

struct Program {
    const char* name;
    const char* purpose;           // one line for the manual page; begins with a small letter, no full stop
    std::vector<Command> commands; // may be empty
    std::vector<Option> options;   // that every command takes, besides --help and the like
    std::string remarks;           // the end of the help text: paragraphs, see Wrapped
    void (*withoutCommand)(const Job&) = nullptr; // null: a command is needed
    /// Command and options that list a folder of the phone for the completion, NUL after each name and '/' at
    /// the end of folders' names; the folder's path follows. With it all Word::PhonePath are completed.
    /// Empty: none is.
    const char* lister = "";
    bool needsHandset = true; // exit status 3 can occur
};

/// The options that every program has.
const std::vector<Option>& StandardOptions();

} // namespace tools
