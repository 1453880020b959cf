// What every command prints with: bytes and texts made visible, JSON texts, progress.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qdiag {

using Bytes = std::vector<unsigned char>;

/// Printable gives a text of the phone, or one that was typed, with control characters, which a terminal
/// would obey, as \xNN.
std::string Printable(std::string_view text);

/// Quoted is Printable in quotes.
std::string Quoted(std::string_view text);

/// HexText gives bytes as pairs of upper-case hex digits, with `separator` between them.
std::string HexText(std::span<const unsigned char> bytes, const char* separator = "");

/// ParseHex reads pairs of hex digits, blanks between them allowed; nothing for any other text.
std::optional<Bytes> ParseHex(std::string_view text);

/// JsonText gives a text as a JSON string with its quotes. Bytes above 0x7E stand for the characters of the
/// same numbers, so that the result is plain ASCII whatever the phone says.
std::string JsonText(std::string_view text);

/// Progress of something that is done in `total` steps, on standard output: one line that is written over on
/// a terminal, a line for every tenth elsewhere (when there are enough of them).
class Progress {
public:
    /// `what` stands in front of the figures.
    Progress(std::string what, size_t total);
    /// Ends the line.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Report shows that `done` steps are done.
    void Report(size_t done);

private:
    const std::string m_what;
    const size_t m_total;
    const bool m_isTerminal;
    size_t m_shown = 0; // percent
    bool m_hasLine = false;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace qdiag
