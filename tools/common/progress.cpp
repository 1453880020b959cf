#include "common/progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "common/quiet.h"
#include "common/terminal.h"

namespace tools {
namespace {

template <class... Values>
std::string Format(const char* format, Values... values) {
    char text[128];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

} // namespace

std::string SizeText(double bytes) {
    if (bytes < 1000)
        return Format("%.0f B", bytes);
    if (bytes < 1e6)
        return Format("%.1f kB", bytes / 1e3);
    return bytes < 1e9 ? Format("%.1f MB", bytes / 1e6) : Format("%.1f GB", bytes / 1e9);
}

Progress::Progress(std::string what, bool isShown)
    : m_what(std::move(what)), m_isShown(isShown && !IsQuiet()), m_width(TerminalWidth()) {}

Progress::~Progress() {
    EndLine();
}

double Progress::Seconds() const {
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - m_start;
    return std::max(passed.count(), 0.001);
}

std::string Progress::TimeLeft(int percent) const {
    if (percent == 0 || percent == 100)
        return "";
    const int left = static_cast<int>(std::ceil(Seconds() * (100 - percent) / percent));
    return Format("  %d:%02d left", left / 60, left % 60);
}

void Progress::Draw(int percent, std::string figures) {
    m_widest = std::max(m_widest, figures.size());
    figures.resize(m_widest, ' '); // so that the bar keeps its length
    // The last column stays free: some terminals begin a new line when it is written.
    const int room = m_width - 1;
    const int bar = std::clamp(room - static_cast<int>(figures.size()) - 3, 0, 40);
    const auto filled = static_cast<size_t>(bar * percent / 100);
    std::string line = bar < 5 ? figures
                               : "[" + std::string(filled, '#') +
                                     std::string(static_cast<size_t>(bar) - filled, '.') + "] " + figures;
    line.resize(static_cast<size_t>(std::max(room, 1)), ' ');
    std::printf("\r%s", line.c_str());
}

void Progress::Report(int percent, const std::string& amount) {
    if (!m_isShown)
        return;
    percent = std::clamp(percent, 0, 100);
    constexpr double kRedraw_s = 0.1;
    const double now = Seconds();
    const bool isOld = m_width ? percent == m_shown && now < m_shownAt + kRedraw_s
                               : m_shown >= 0 && percent / 10 == m_shown / 10;
    if (isOld)
        return;
    m_shown = percent;
    m_shownAt = now;
    const std::string figures = (m_what.empty() ? "" : m_what + ": ") + Format("%3d %%", percent) +
                                (amount.empty() ? "" : "  " + amount) + TimeLeft(percent);
    if (m_width)
        Draw(percent, figures);
    else
        std::printf("%s\n", figures.c_str());
    m_isLineBegun = m_width != 0;
    std::fflush(stdout);
}

void Progress::ReportSteps(size_t done, size_t total) {
    Report(total == 0 ? 100 : static_cast<int>(done * 100 / total),
           std::to_string(done) + " of " + std::to_string(total));
}

void Progress::ReportBytes(int percent, uint64_t total, const std::string& lead) {
    std::string amount = lead;
    if (total != 0) {
        const double done = static_cast<double>(total) * std::clamp(percent, 0, 100) / 100;
        amount += (lead.empty() ? "" : "  ") + SizeText(done) + " of " + SizeText(static_cast<double>(total));
        if (percent > 0)
            amount += "  " + SizeText(done / Seconds()) + "/s";
    }
    Report(percent, amount);
}

void Progress::EndLine() {
    if (m_isLineBegun)
        std::printf("\n");
    m_isLineBegun = false;
    std::fflush(stdout);
}

} // namespace tools
