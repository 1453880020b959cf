// What the command line asks for.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace qdiag {

struct Job {
    std::vector<std::string> arguments;         // of the command
    std::map<std::string, std::string> options; // by name ("--port"); the value of a switch is empty

    bool Has(const std::string& option) const { return options.contains(option); }
    /// Value gives an option's value; empty when the option was not given.
    std::string Value(const std::string& option) const;
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
    std::vector<std::string> options; // that it takes, besides those of the connection
    void (*run)(const Job& job);
};

void InfoCommand(const Job& job);      // info.cpp
void NvReadCommand(const Job& job);    // nv.cpp
void NvWriteCommand(const Job& job);   // nv.cpp
void NvBackupCommand(const Job& job);  // nv_backup.cpp
void NvRestoreCommand(const Job& job); // nv_restore.cpp
void LogCommand(const Job& job);       // log.cpp
void ReplayCommand(const Job& job);    // replay.cpp
void PortsCommand(const Job& job);     // ports.cpp

} // namespace qdiag
