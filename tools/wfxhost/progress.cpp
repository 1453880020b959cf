#include "wfxhost/progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace wfxhost {
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

Progress::Progress(uint64_t size, int width) : m_size(size), m_width(width) {}

double Progress::Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
}

std::string Progress::Figures(int percent) const {
    std::string text = Format("%3d %%", percent);
    const double done = static_cast<double>(m_size) * percent / 100;
    if (m_size)
        text += "  " + SizeText(done) + " of " + SizeText(static_cast<double>(m_size));
    const double seconds = Seconds();
    if (percent == 0 || seconds <= 0)
        return text;
    if (m_size)
        text += "  " + SizeText(done / seconds) + "/s";
    if (percent == 100)
        return text;
    const int left = static_cast<int>(std::ceil(seconds * (100 - percent) / percent));
    return text + Format("  %d:%02d left", left / 60, left % 60);
}

void Progress::Report(int percent) {
    percent = std::clamp(percent, 0, 100);
    if (percent == m_shown || (!m_width && m_shown >= 0 && percent / 10 == m_shown / 10))
        return;
    m_shown = percent;
    const std::string figures = Figures(percent);
    if (!m_width) {
        std::printf("%s\n", figures.c_str());
    } else {
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
    std::fflush(stdout);
}

void Progress::Finish(bool success, uint64_t bytes) {
    if (m_width && m_shown >= 0)
        std::printf("\n");
    if (success) {
        const double seconds = std::max(Seconds(), 0.001);
        const auto count = static_cast<double>(bytes);
        std::printf("%llu bytes in %.2f s (%s/s)\n", static_cast<unsigned long long>(bytes), seconds,
                    SizeText(count / seconds).c_str());
    }
    std::fflush(stdout);
}

} // namespace wfxhost
