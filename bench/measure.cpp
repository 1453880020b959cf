#include "bench/measure.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "bench/bare_files.h"
#include "bench/process_figures.h"

namespace {

constexpr const char* kAnyFolder = "/";

} // namespace

void KeepFaster(Usage& best, const Usage& usage) {
    if (best.fWall_us == 0 || usage.fWall_us < best.fWall_us)
        best = usage;
}

void Rounds::Add(const Usage& usage) {
    m_wall_us.push_back(usage.fWall_us);
    m_cpu_us.push_back(usage.fCpu_us);
}

Usage Rounds::Median() {
    return {Percentile(m_wall_us, 0.5), Percentile(m_cpu_us, 0.5)};
}

Usage Measure(const std::function<void()>& work) {
    const double fCpu_us = OwnCpu_us();
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - start;
    return {taken.count(), OwnCpu_us() - fCpu_us};
}

void Require(bool bHolds, const char* sWhat) {
    if (!bHolds)
        throw std::runtime_error(sWhat);
}

double Percentile(std::vector<double>& values, double fPart) {
    std::sort(values.begin(), values.end());
    return values.at(static_cast<size_t>(fPart * static_cast<double>(values.size() - 1)));
}

void Bench::Set(const Condition& condition) {
    phone.SetLatency(condition.iLatency_us);
    phone.SetChatter(condition.iChatter);
}

Bench::Pair Bench::Compare(const Condition& condition, size_t iRounds,
                           const std::function<void(BareLine&)>& bare,
                           const std::function<void(Diag_FTM&)>& client) {
    Set(condition);
    Rounds bareRounds;
    Rounds clientRounds;
    for (size_t i = 0; i < iRounds; ++i) {
        {
            BareLine line(phone.Tty());
            BareStatus(line, kAnyFolder);
            bareRounds.Add(Measure([&] { bare(line); }));
        }
        Client connection(*this, condition);
        ClientStatus(*connection, kAnyFolder);
        clientRounds.Add(Measure([&] { client(*connection); }));
    }
    return {bareRounds.Median(), clientRounds.Median()};
}

size_t Bench::RoundsFor(const Condition& condition, size_t iExchanges) const {
    const size_t iWorth = (condition.iLatency_us == 0 ? 40000 : 1500) * (bFull ? 3u : 1u);
    return std::clamp<size_t>(iWorth / iExchanges, condition.iLatency_us == 0 ? 3 : 1, 25);
}

Client::Client(const Bench& bench, const Condition& condition) {
    if (condition.bLog)
        m_diag.StartLogging(bench.Local("log.txt").c_str());
    Require(m_diag.OpenPort(), "the port cannot be opened");
}

void ClientStatus(Diag_FTM& diag, const std::string& sPath) {
    DWORD v[7];
    Require(diag.EFS2_DIAG_STAT(sPath.c_str(), v[0], v[1], v[2], v[3], v[4], v[5], v[6]), "no status");
}

void ClientListing(Diag_FTM& diag, const std::string& sFolder, size_t iEntries) {
    size_t iCount = 0;
    const auto countEntry = [](char*, unsigned char, unsigned short, unsigned char, unsigned char, DWORD,
                               DWORD, void* pCount) -> unsigned char {
        ++*static_cast<size_t*>(pCount);
        return 0;
    };
    diag.ConfigureEfsCallbacks(&iCount, nullptr, countEntry);
    const bool bListed = diag.EFS2_DIAG_ENUM_DIR(sFolder.c_str());
    diag.ConfigureEfsCallbacks(nullptr, nullptr, nullptr);
    Require(bListed && iCount == iEntries, "not every entry was listed");
}

void ClientDownload(Diag_FTM& diag, const std::string& sPath, const std::string& sLocal) {
    Require(diag.EFS2_DIAG_READ_FILE(sLocal.c_str(), sPath.c_str()), "the download failed");
}

void ClientUpload(Diag_FTM& diag, const std::string& sLocal, const std::string& sPath) {
    Require(diag.EFS2_DIAG_WRITE_FILE(sLocal.c_str(), sPath.c_str()), "the upload failed");
}
