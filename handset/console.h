// Text commands for a simulated handset, one a line.
#pragma once

#include <string>

namespace handset {

class Handset;

/// Belongs to one thread.
class Console {
public:
    explicit Console(Handset& handset) : m_handset(handset) {}

    /// Carries one command line out and gives the lines of its answer, each ended by a line feed; the last is
    /// "ok" or "error: REASON". An empty line gives nothing.
    std::string Run(const std::string& line);

    /// True after the command "quit".
    bool WantsToQuit() const { return m_quit; }

    /// The commands, a line each.
    static std::string Help();

private:
    struct Command;
    static const Command* Find(const std::string& word);

    // Each takes the rest of the line and puts its answer's lines into `answer`; gives what is wrong, or "".
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

/// Reads a whole number of the given base ("0x" is understood in base 16); false when the text is no number,
/// or one outside 0 to `limit`.
bool ParseNumber(const std::string& text, int base, unsigned long limit, unsigned long& value);

} // namespace handset
