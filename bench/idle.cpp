// An open, idle connection.
#include <chrono>
#include <thread>

#include "bench/bare_files.h"
#include "bench/measure.h"
#include "bench/process_figures.h"

namespace {

constexpr std::chrono::milliseconds kSettling(100); // the receive thread takes over from the caller

struct IdleFigures {
    double fWakeUps; // per second
    double fCpu_us;  // per second
};

IdleFigures Sleep(std::chrono::seconds time) {
    const uint64_t iBefore = VoluntarySwitches();
    const Usage usage = Measure([&] { std::this_thread::sleep_for(time); });
    const auto fSeconds = static_cast<double>(time.count());
    return {static_cast<double>(VoluntarySwitches() - iBefore) / fSeconds, usage.fCpu_us / fSeconds};
}

} // namespace

void MeasureIdle(Bench& bench) {
    constexpr size_t kFileSize = 1024;
    const Condition& condition = kAtOnce;
    const std::string sFile = "file" + std::to_string(kFileSize);
    const std::chrono::seconds time(bench.bFull ? 20 : 4);
    bench.report.BeginTopic("idle, port open");
    bench.phone.MakeFile(kFileSize);
    bench.Set(condition);
    IdleFigures bare{};
    {
        BareLine line(bench.phone.Tty());
        BareStatus(line, sFile);
        bare = Sleep(time);
    }
    Client connection(bench, condition);
    ClientStatus(*connection, sFile);
    std::this_thread::sleep_for(kSettling);
    const IdleFigures client = Sleep(time);
    bench.report.Add({"wake-ups per second", "", "", bare.fWakeUps, client.fWakeUps});
    bench.report.Add({"processor time per second", "", "us", bare.fCpu_us, client.fCpu_us});
}
