// The command-line host as its users run it, its start and its end included, beside the client's enumeration
// alone.
#include <algorithm>
#include <cstdlib>

#include "bench/measure.h"

namespace {

constexpr size_t kEntries = 1000;
constexpr size_t kRounds = 3;
constexpr size_t kOtherRequests = 3; // opening, the end of the folder, closing

Usage ListByProgram(const std::string& sFolder) {
    const std::string sCommand = "'" QUILLET_WFXHOST "' ls " + sFolder + " > /dev/null";
    return Measure([&] { Require(std::system(sCommand.c_str()) == 0, "wfxhost ls failed"); });
}

} // namespace

void MeasurePrograms(Bench& bench) {
    bench.report.BeginTopic("programs");
    const std::string sFolder = "folder" + std::to_string(kEntries);
    const Condition& condition = kAfter1ms;
    bench.phone.MakeFolder(kEntries);
    bench.Set(condition);
    double fAlone_us = 0;
    double fProgram_us = 0;
    for (size_t i = 0; i < kRounds; ++i) {
        Usage alone;
        {
            Client connection(bench, condition);
            alone = Measure([&] { ClientListing(*connection, sFolder, kEntries); });
        }
        const double fWhole_us = ListByProgram(sFolder).fWall_us;
        fAlone_us = i == 0 ? alone.fWall_us : std::min(fAlone_us, alone.fWall_us);
        fProgram_us = i == 0 ? fWhole_us : std::min(fProgram_us, fWhole_us);
    }
    bench.report.AddTime({"wfxhost ls of 1000 entries",
                          condition.sName,
                          "ms",
                          fAlone_us / 1000,
                          fProgram_us / 1000,
                          (fProgram_us - fAlone_us) / (kEntries + kOtherRequests),
                          kNoFigure,
                          {.fFactor = 1.1}});
}
