#include "bench/process_figures.h"

#include <sys/resource.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

uint64_t StatusValue(const std::filesystem::path& file, const std::string& sName) {
    std::ifstream status(file);
    std::string sLine;
    while (std::getline(status, sLine))
        if (sLine.starts_with(sName + ":"))
            return std::strtoull(sLine.c_str() + sName.size() + 1, nullptr, 10);
    return 0;
}

double Cpu_us(int iWhose) {
    rusage usage{};
    getrusage(iWhose, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e6 +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

} // namespace

uint64_t VoluntarySwitches() {
    uint64_t iSum = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task"))
        iSum += StatusValue(task.path() / "status", "voluntary_ctxt_switches");
    return iSum;
}

double OwnCpu_us() {
    return Cpu_us(RUSAGE_SELF);
}

double CpuOfChildren_us() {
    return Cpu_us(RUSAGE_CHILDREN);
}

double Resident_MiB() {
    return static_cast<double>(StatusValue("/proc/self/status", "VmRSS")) / 1024;
}

double Peak_MiB() {
    return static_cast<double>(StatusValue("/proc/self/status", "VmHWM")) / 1024;
}

void ForgetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

double PeakOf_MiB(int iProcess) {
    return static_cast<double>(StatusValue("/proc/" + std::to_string(iProcess) + "/status", "VmHWM")) / 1024;
}
