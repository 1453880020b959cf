// Text commands for a simulated handset, one per line.
#pragma once

#include <span>
#include <string>

namespace handset {

class Handset;

/// Belongs to one thread.
class Console {
public:
    explicit Console(Handset& handset) : m_handset(handset) {}

    /// Runs one command line. Returns its output, each line ended by a line feed; the last line is "ok" or
    /// "error: REASON". Returns "" for an empty line.
    std::string Run(const std::string& line);

    /// True once the command "quit" has run.
    bool WantsToQuit() const { return m_quit; }

    /// The commands, one line each.
    static std::string Help();

private:
    struct Command;
    static std::span<const Command> Commands();
    static const Command* Find(const std::string& word);

    // Each takes the rest of the line and writes its output to `answer`. Returns the reason of an error, or
    // "".
    std::string Unplug(const std::string& rest, std::string& answer);
    std::string Replug(const std::string& rest, std::string& answer);
    std::string List(const std::string& rest, std::string& answer);
    std::string Cat(const std::string& rest, std::string& answer);
    std::string ExportTo(const std::string& rest, std::string& answer);
    std::string Requests(const std::string& rest, std::string& answer);
    std::string ClearRequests(const std::string& rest, std::string& answer);
    std::string Misbehave(const std::string& rest, std::string& answer);
    std::string Behave(const std::string& rest, std::string& answer);
    std::string Latency(const std::string& rest, std::string& answer);
    std::string Chatter(const std::string& rest, std::string& answer);
    std::string DataMode(const std::string& rest, std::string& answer);
    std::string Send(const std::string& rest, std::string& answer);
    std::string EmitLog(const std::string& rest, std::string& answer);
    std::string EmitMessage(const std::string& rest, std::string& answer);
    std::string EmitEvent(const std::string& rest, std::string& answer);
    std::string Quit(const std::string& rest, std::string& answer);

    Handset& m_handset;
    bool m_quit = false;
};

/// Reads an integer in the given base (base 16 allows "0x"); false when the text is not a number from 0 to
/// `limit`.
bool ParseNumber(const std::string& text, int base, unsigned long limit, unsigned long& value);

} // namespace handset
