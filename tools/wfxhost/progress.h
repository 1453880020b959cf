// The progress of one transfer on standard output: a bar on a terminal, plain lines elsewhere.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace wfxhost {

/// SizeText gives a number of bytes in a unit that fits: "812 B", "307.2 kB", "1.4 MB" (1 kB = 1000 B).
std::string SizeText(double bytes);

class Progress {
public:
    /// Progress of a transfer of `size` bytes (0: not known) that begins now. `width`: the columns of the
    /// terminal, 0 for plain lines (at most one per 10 %).
    Progress(uint64_t size, int width);

    /// Report shows how far the transfer is. `percent` outside 0 to 100 is taken for the nearer of them.
    void Report(int percent);
    /// Finish ends the bar's line and, after a success, tells the bytes that were really copied, time and
    /// speed.
    void Finish(bool success, uint64_t bytes);

private:
    double Seconds() const;
    std::string Figures(int percent) const;

    uint64_t m_size;
    int m_width;
    int m_shown = -1; // the percentage shown last
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace wfxhost
