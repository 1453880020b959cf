// A program with commands: its command line, its help text, its exit status.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "common/failure.h"

namespace tools {

/// What the command line asks for.
struct Job {
    std::vector<std::string> arguments;         // of the command; none is empty
    std::map<std::string, std::string> options; // by name ("--port"); the value of a switch is empty

    bool Has(const std::string& option) const { return options.contains(option); }
    /// Value gives an option's value, `otherwise` when the option was not given.
    std::string Value(const std::string& option, const std::string& otherwise = "") const;
    /// Number gives an option's value as ParseNumber does, `otherwise` when the option was not given.
    unsigned long Number(const std::string& option, unsigned long limit, unsigned long otherwise) const;
    /// Numbers gives an option's value of several numbers with commas between them.
    std::vector<unsigned short> Numbers(const std::string& option) const;
};

/// ParseNumber reads a number, decimal or with "0x", from 0 to `limit`. Throws Failure (wrong usage), which
/// calls it `what`, for any other text.
unsigned long ParseNumber(const std::string& text, unsigned long limit, const std::string& what);

/// One command: how it is called and what carries it out. `run` returns after a success and throws Failure
/// otherwise.
struct Command {
    const char* name; // one or two words
    const char* arguments;
    const char* purpose;
    size_t least; // number of arguments
    size_t most;
    std::vector<std::string> options; // that it takes, besides those that every command takes
    void (*run)(const Job& job);
};

struct Option {
    const char* name;
    const char* value; // what it is, null for a switch
    const char* purpose;
    bool isForAll = false; // every command takes it
};

struct Program {
    const char* name;
    std::vector<Command> commands;
    std::vector<Option> options;
    const char* remarks;                          // for the help text, behind the tables; lines
    void (*withoutCommand)(const Job&) = nullptr; // null: there has to be a command
};

/// RunProgram does what the command line asks for, prints the reason of a failure, and gives the exit status.
int RunProgram(const Program& program, int count, char** words);

} // namespace tools
