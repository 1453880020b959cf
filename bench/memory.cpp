// The memory that work takes, in addition to what the process used before.
#include "bench/bare_files.h"
#include "bench/measure.h"
#include "bench/process_figures.h"

namespace {

double Growth_MiB(const std::function<void()>& work) {
    ForgetPeak();
    const double fBefore = Resident_MiB();
    work();
    return Peak_MiB() - fBefore;
}

void AddGrowth(Bench& bench, const std::string& sItem, const Condition& condition,
               const std::function<void(BareLine&)>& bare, const std::function<void(Diag_FTM&)>& client) {
    bench.Set(condition);
    const double fBare = Growth_MiB([&] {
        BareLine line(bench.phone.Tty());
        bare(line);
    });
    const double fClient = Growth_MiB([&] {
        Client connection(bench, condition);
        client(*connection);
    });
    bench.report.Add({sItem, condition.sName, "MiB", fBare, fClient});
}

} // namespace

void MeasureMemory(Bench& bench) {
    const size_t iSize = (bench.bFull ? 64u : 4u) * 1024 * 1024;
    const size_t iEntries = bench.bFull ? 100000 : 10000;
    const std::string sFile = "file" + std::to_string(iSize);
    const std::string sFolder = "folder" + std::to_string(iEntries);
    const std::string sLocal = bench.Local("client");
    bench.phone.MakeFile(iSize);
    bench.phone.MakeFolder(iEntries);
    bench.report.BeginTopic("memory, more than before");
    for (const Condition* pCondition : {&kAtOnce, &kAtOnceInFlood}) {
        AddGrowth(
            bench, "status of a file", *pCondition, [&](BareLine& line) { BareStatus(line, sFile); },
            [&](Diag_FTM& diag) { ClientStatus(diag, sFile); });
        const std::string sMiB = std::to_string(iSize / 1024 / 1024) + " MiB";
        AddGrowth(
            bench, "download of " + sMiB, *pCondition,
            [&](BareLine& line) { BareDownload(line, sFile, sLocal); },
            [&](Diag_FTM& diag) { ClientDownload(diag, sFile, sLocal); });
        AddGrowth(
            bench, "upload of " + sMiB, *pCondition, [&](BareLine& line) { BareUpload(line, sLocal, "up"); },
            [&](Diag_FTM& diag) { ClientUpload(diag, sLocal, "up"); });
        AddGrowth(
            bench, "listing of " + std::to_string(iEntries), *pCondition,
            [&](BareLine& line) { BareListing(line, sFolder, iEntries); },
            [&](Diag_FTM& diag) { ClientListing(diag, sFolder, iEntries); });
    }
}
