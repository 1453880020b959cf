// quillet-bench: the cost that the client adds to a bare request and response, over the same pseudo-terminal
// with the same handset in the same run.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>

#include "bench/measure.h"

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

struct Topic {
    const char* sName;
    void (*pfnMeasure)(Bench&);
};
constexpr Topic kTopics[] = {
    {"exchange", MeasureExchanges}, {"listing", MeasureListings},  {"transfer", MeasureTransfers},
    {"framing", MeasureFraming},    {"idle", MeasureIdle},         {"memory", MeasureMemory},
    {"ports", MeasurePortSearch},   {"programs", MeasurePrograms}, {"mount", MeasureMounted},
};

struct Options {
    bool bFull = false;
    std::string sJson;
    std::string sOnly;
    size_t iProfiled = 0; // bytes of a single download
    bool bLog = false;
};

void PrintUsage(std::FILE* file) {
    std::fputs(
        "usage: quillet-bench [--quick | --full] [--json FILE] [--only TOPIC] [--profile BYTES [--log]]\n\n"
        "--quick: about three minutes (the default); --full: about fifteen, with large files and folders\n"
        "--json FILE: write the rows to FILE\n"
        "--only TOPIC: exchange, listing, transfer, framing, idle, memory, ports, programs or mount\n"
        "--profile BYTES: only one download by the client, for a profiler; --log: with the text log\n",
        file);
}

std::optional<Options> Parse(int iCount, char** psArguments) {
    Options options;
    for (int i = 1; i < iCount; ++i) {
        const std::string sOption = psArguments[i];
        const char* const sValue = i + 1 < iCount ? psArguments[i + 1] : nullptr;
        if (sOption == "--quick" || sOption == "--full") {
            options.bFull = sOption == "--full";
            continue;
        }
        if (sOption == "--log") {
            options.bLog = true;
            continue;
        }
        if (sValue == nullptr)
            return {};
        if (sOption == "--json")
            options.sJson = sValue;
        else if (sOption == "--only")
            options.sOnly = sValue;
        else if (sOption == "--profile")
            options.iProfiled = std::stoul(sValue);
        else
            return {};
        ++i;
    }
    const bool bKnown = options.sOnly.empty() || std::ranges::any_of(kTopics, [&](const Topic& topic) {
                            return options.sOnly == topic.sName;
                        });
    return bKnown ? std::optional(options) : std::nullopt;
}

void Profile(Bench& bench, size_t iBytes, bool bLog) {
    bench.phone.MakeFile(iBytes);
    Client connection(bench, bLog ? kAtOnceWithLog : kAtOnce);
    ClientDownload(*connection, "file" + std::to_string(iBytes), bench.Local("client"));
}

bool Run(const Options& options) {
    Bench bench;
    bench.bFull = options.bFull;
    if (options.iProfiled != 0) {
        Profile(bench, options.iProfiled, options.bLog);
        return true;
    }
    for (const Topic& topic : kTopics)
        if (options.sOnly.empty() || options.sOnly == topic.sName)
            topic.pfnMeasure(bench);
    std::printf(
        "\nfloor: a bare loop over the same line in the same run, or the yardstick that the row names;\n"
        "factor: cost of the client / cost of the floor; %zu goals missed\n",
        bench.report.Missed());
    return options.sJson.empty() || bench.report.WriteJson(options.sJson);
}

} // namespace

int main(int iCount, char** psArguments) {
    try {
        const auto options = Parse(iCount, psArguments);
        if (!options) {
            PrintUsage(stderr);
            return kWrongUsage;
        }
        return Run(*options) ? 0 : kFailed;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quillet-bench: %s\n", error.what());
        return kFailed;
    }
}
