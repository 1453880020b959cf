#include "bench/report.h"

#include <cmath>
#include <cstdio>
#include <memory>

namespace {

double CostFactor(const Row& row) {
    return std::isnan(row.fFactor) ? row.fClient / row.fFloor : row.fFactor;
}

bool IsMet(const Row& row) {
    const Goal& goal = row.goal;
    return (std::isnan(goal.fFactor) || CostFactor(row) <= goal.fFactor) &&
           (std::isnan(goal.fAdded_us) || row.fAdded_us <= goal.fAdded_us);
}

std::string Text(const Goal& goal) {
    if (goal.fFactor == kNotMore.fFactor)
        return "<= floor";
    char sText[60] = "";
    if (!std::isnan(goal.fFactor) && !std::isnan(goal.fAdded_us))
        std::snprintf(sText, sizeof sText, "<= %g x, %g us", goal.fFactor, goal.fAdded_us);
    else if (!std::isnan(goal.fFactor))
        std::snprintf(sText, sizeof sText, "<= %g x", goal.fFactor);
    else if (!std::isnan(goal.fAdded_us))
        std::snprintf(sText, sizeof sText, "<= %g us", goal.fAdded_us);
    return sText;
}

/// Three significant digits, but all digits before the point.
std::string Number(double fValue) {
    if (std::isnan(fValue))
        return "";
    char sText[40];
    const double fSize = std::fabs(fValue);
    std::snprintf(sText, sizeof sText, "%.*f", fSize >= 99.95 ? 0 : fSize >= 9.995 ? 1 : 2, fValue);
    return sText;
}

std::string JsonNumber(double fValue) {
    if (!std::isfinite(fValue))
        return "null";
    char sText[40];
    std::snprintf(sText, sizeof sText, "%.6g", fValue);
    return sText;
}

} // namespace

void Report::BeginTopic(const std::string& sTitle) {
    m_sTopic = sTitle;
    std::printf("\n%-34s %-15s %-5s %7s %7s %8s %6s %9s %6s  %s\n", sTitle.c_str(), "handset", "unit",
                "floor", "client", "added us", "factor", "cpu floor", "client", "goal");
}

void Report::Add(const Row& row) {
    const bool bMet = IsMet(row);
    m_iMissed += bMet ? 0 : 1;
    m_entries.push_back({m_sTopic, row, bMet});
    std::printf("  %-32s %-15s %-5s %7s %7s %8s %6s %9s %6s  %s%s\n", row.sItem.c_str(),
                row.sCondition.c_str(), row.sUnit.c_str(), Number(row.fFloor).c_str(),
                Number(row.fClient).c_str(), Number(row.fAdded_us).c_str(), Number(row.fFactor).c_str(),
                Number(row.fFloorCpu_us).c_str(), Number(row.fClientCpu_us).c_str(), Text(row.goal).c_str(),
                bMet ? "" : " MISSED");
    std::fflush(stdout);
}

void Report::AddTime(Row row) {
    row.fFactor = row.fClient / row.fFloor;
    Add(row);
}

void Report::AddRate(Row row) {
    row.fFactor = row.fFloor / row.fClient;
    Add(row);
}

bool Report::WriteJson(const std::string& sFile) const {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(sFile.c_str(), "w"), std::fclose);
    if (file == nullptr)
        return false;
    const char* sSeparator = "[\n";
    for (const auto& [sTopic, row, bMet] : m_entries) {
        std::fprintf(file.get(),
                     "%s {\"topic\": \"%s\", \"item\": \"%s\", \"handset\": \"%s\", \"unit\": \"%s\", "
                     "\"floor\": %s, \"client\": %s, \"added_us\": %s, \"factor\": %s, \"floor_cpu_us\": %s, "
                     "\"client_cpu_us\": %s, \"goal\": \"%s\", "
                     "\"met\": %s}",
                     sSeparator, sTopic.c_str(), row.sItem.c_str(), row.sCondition.c_str(), row.sUnit.c_str(),
                     JsonNumber(row.fFloor).c_str(), JsonNumber(row.fClient).c_str(),
                     JsonNumber(row.fAdded_us).c_str(), JsonNumber(row.fFactor).c_str(),
                     JsonNumber(row.fFloorCpu_us).c_str(), JsonNumber(row.fClientCpu_us).c_str(),
                     Text(row.goal).c_str(), bMet ? "true" : "false");
        sSeparator = ",\n";
    }
    std::fputs("\n]\n", file.get());
    return std::ferror(file.get()) == 0;
}
