// The command-line programs as their users run them, start and end included, beside the client's own work
// alone.
#include <algorithm>
#include <cstdlib>

#include "bench/measure.h"
#include "bench/process_figures.h"

namespace {

constexpr size_t kRounds = 3;

/// Runs a program. Its processor time is that of its own process.
Usage RunProgram(const std::string& sCommandLine) {
    const double fCpuBefore_us = CpuOfChildren_us();
    Usage usage = Measure(
        [&] { Require(std::system((sCommandLine + " > /dev/null").c_str()) == 0, "a program failed"); });
    usage.fCpu_us = CpuOfChildren_us() - fCpuBefore_us;
    return usage;
}

struct BothSides {
    Usage client;
    Usage program;
};

/// Runs the client's work and the program in turn, and returns the fastest round of each.
BothSides Compare(Bench& bench, const std::function<void(Diag_FTM&)>& client,
                  const std::string& sCommandLine) {
    BothSides best;
    for (size_t i = 0; i < kRounds; ++i) {
        {
            Client connection(bench, kAfter1ms);
            KeepFaster(best.client, Measure([&] { client(*connection); }));
        }
        KeepFaster(best.program, RunProgram(sCommandLine));
    }
    return best;
}

void MeasureList(Bench& bench) {
    constexpr size_t kEntries = 1000;
    constexpr size_t kOtherRequests = 3; // opening, the end of the folder, closing
    const std::string sFolder = "folder" + std::to_string(kEntries);
    bench.phone.MakeFolder(kEntries);
    const BothSides best = Compare(
        bench, [&](Diag_FTM& diag) { ClientListing(diag, sFolder, kEntries); },
        "'" QUILLET_WFXHOST "' ls " + sFolder);
    bench.report.AddTime({"wfxhost ls of 1000 entries",
                          kAfter1ms.sName,
                          "ms",
                          best.client.fWall_us / 1000,
                          best.program.fWall_us / 1000,
                          (best.program.fWall_us - best.client.fWall_us) / (kEntries + kOtherRequests),
                          kNoFigure,
                          {.fFactor = 1.1}});
}

#ifdef QUILLET_QDIAG

/// The folder has one file, so that the backup sends few requests besides those of the transfer.
void MeasureBackup(Bench& bench) {
    constexpr size_t kSize = 4 * 1024 * 1024;
    const std::string sFolder = "folder-of-" + std::to_string(kSize);
    const std::string sLocal = bench.Local("client");
    bench.phone.MakeFolderOfFile(kSize);
    const BothSides best = Compare(
        bench, [&](Diag_FTM& diag) { ClientDownload(diag, sFolder + "/file", sLocal); },
        "'" QUILLET_QDIAG "' efs backup --force '" + bench.Local("backup.tar.gz") + "' " + sFolder);
    Row row{"qdiag efs backup of 4 MiB", kAfter1ms.sName, "ms", best.client.fWall_us / 1000,
            best.program.fWall_us / 1000};
    row.goal.fFactor = 1.1;
    bench.report.AddTime(row);
    Row archive{"  processor time for the archive", kAfter1ms.sName, "ms", best.client.fWall_us / 1000 / 10,
                (best.program.fCpu_us - best.client.fCpu_us) / 1000};
    archive.goal = kNotMore;
    bench.report.AddTime(archive);
}

#endif

} // namespace

void MeasurePrograms(Bench& bench) {
    bench.report.BeginTopic("programs");
    bench.Set(kAfter1ms);
    MeasureList(bench);
#ifdef QUILLET_QDIAG
    MeasureBackup(bench);
#endif
}
