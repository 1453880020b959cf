// Progress on standard output: a bar on a terminal, plain lines elsewhere.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tools {

/// Returns a number of bytes in a suitable unit: "812 B", "307.2 kB", "1.4 MB" (1 kB = 1000 B).
std::string SizeText(double bytes);

/// Progress measures the time since its construction. Its destructor ends the line of the bar. It prints
/// nothing while IsQuiet().
class Progress {
public:
    /// `what` is printed before the figures and may be empty. If `isShown` is false, nothing is printed.
    explicit Progress(std::string what = "", bool isShown = true);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Shows a percentage, `amount` and the remaining time. Without a bar, prints at most one line per 10 %.
    /// `percent` is clamped to 0 to 100.
    void Report(int percent, const std::string& amount);
    /// Shows that `done` of `total` steps are done.
    void ReportSteps(size_t done, size_t total);
    /// Shows `lead`, how much of `total` bytes (0: unknown) is copied, and how fast.
    void ReportBytes(int percent, uint64_t total, const std::string& lead = "");

    /// Ends the line of the bar so that something else can be printed. The next report begins a new one.
    void EndLine();
    /// Returns the seconds since the construction, never 0.
    double Seconds() const;

private:
    std::string TimeLeft(int percent) const;
    void Draw(int percent, std::string figures);

    const std::string m_what;
    const bool m_isShown;
    const int m_width;    // of the terminal; 0: none
    int m_shown = -1;     // the percentage shown last
    double m_shownAt = 0; // in Seconds()
    size_t m_widest = 0;  // of the figures drawn so far
    bool m_isLineBegun = false;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace tools
