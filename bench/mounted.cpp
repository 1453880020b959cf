// The mounted folder beside wfxhost, as users run both: each a process of its own.
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <vector>

#include "bench/measure.h"
#include "bench/process_figures.h"

#ifdef QUILLET_MOUNT

namespace {

constexpr size_t kMiB = 1024 * 1024;
constexpr size_t kBlock = 1536;
constexpr double kMemoryLimit_MiB = 64;

pid_t Start(std::vector<std::string> words) {
    std::vector<char*> pointers;
    for (std::string& sWord : words)
        pointers.push_back(sWord.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t iProcess = 0;
    Require(posix_spawnp(&iProcess, pointers[0], &actions, nullptr, pointers.data(), environ) == 0,
            "a program cannot be started");
    posix_spawn_file_actions_destroy(&actions);
    return iProcess;
}

void Run(const std::vector<std::string>& words) {
    int iStatus = 0;
    Require(waitpid(Start(words), &iStatus, 0) > 0 && iStatus == 0, "a program failed");
}

double Seconds(const std::vector<std::string>& words) {
    return Measure([&] { Run(words); }).fWall_us / 1e6;
}

/// A handset's folder, mounted as long as the object lives.
class MountedFolder {
public:
    explicit MountedFolder(const Bench& bench) : m_sPath(bench.Local("mnt")) {
        std::filesystem::create_directory(m_sPath);
        const dev_t before = Device();
        m_iProcess = Start({QUILLET_MOUNT, "-f", m_sPath});
        for (int i = 0; i < 500 && Device() == before; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        Require(Device() != before, "the handset is not mounted");
    }
    ~MountedFolder() {
        kill(m_iProcess, SIGTERM);
        waitpid(m_iProcess, nullptr, 0);
    }
    MountedFolder(const MountedFolder&) = delete;
    MountedFolder& operator=(const MountedFolder&) = delete;

    std::string Path(const std::string& sName) const { return m_sPath + "/" + sName; }
    double Memory_MiB() const { return PeakOf_MiB(m_iProcess); }

private:
    dev_t Device() const {
        struct stat status {};
        return stat(m_sPath.c_str(), &status) == 0 ? status.st_dev : 0;
    }

    const std::string m_sPath;
    pid_t m_iProcess = 0;
};

void MeasureCopies(Bench& bench, const Condition& condition) {
    constexpr size_t kSize = 4 * kMiB;
    const std::string sFile = "file" + std::to_string(kSize);
    const std::string sLocal = bench.Local("client");
    const std::vector<std::string> host = {QUILLET_WFXHOST, "--plugin", QUILLET_PLUGIN_FILE};
    const auto with = [&](std::initializer_list<std::string> more) {
        std::vector<std::string> words = host;
        words.insert(words.end(), more);
        return words;
    };
    double fGetHost = 1e9, fPutHost = 1e9, fGetMount = 1e9, fPutMount = 1e9;
    bench.phone.MakeFile(kSize);
    for (int i = 0; i < (bench.bFull ? 3 : 1); ++i) {
        fGetHost = std::min(fGetHost, Seconds(with({"get", "--force", "/" + sFile, sLocal})));
        fPutHost = std::min(fPutHost, Seconds(with({"put", "--force", sLocal, "/up"})));
        const MountedFolder folder(bench);
        fGetMount = std::min(fGetMount, Seconds({"cp", folder.Path(sFile), sLocal}));
        fPutMount = std::min(fPutMount, Seconds({"cp", sLocal, folder.Path("up")}));
        Require(bench.phone.UploadIsRight(kSize), "the mounted folder stored other bytes");
    }
    const auto add = [&](const char* sItem, double fHost, double fMount) {
        Row row{sItem, condition.sName, "s", fHost, fMount};
        row.goal = {.fFactor = 1.15};
        bench.report.AddTime(row);
    };
    add("4 MiB from the phone", fGetHost, fGetMount);
    add("4 MiB to the phone", fPutHost, fPutMount);
}

void AddCount(Bench& bench, const char* sItem, double fLimit, uint64_t iCount) {
    Row row{sItem, "at once", "", fLimit, static_cast<double>(iCount)};
    row.goal = kNotMore;
    bench.report.Add(row);
}

void CountRequests(Bench& bench) {
    const std::string sFile = "file" + std::to_string(kBlock);
    bench.phone.MakeFile(kBlock);
    bench.phone.MakeFolder(1000);
    const MountedFolder folder(bench);
    Run({"ls", folder.Path("")}); // the port is taken, the folders above are known
    const auto count = [&](const std::function<void()>& work) {
        bench.phone.CountRequests();
        work();
        return bench.phone.RequestCount();
    };
    // The folder itself is asked about too: is it a link, and what are its attributes?
    AddCount(bench, "requests of ls -l, 1000 entries", 1000 + 3 + 2, count([&] {
                 Run({"ls", "-l", folder.Path("folder1000")});
             }));
    AddCount(bench, "requests of cat, 1 block", 5, count([&] { Run({"cat", folder.Path(sFile)}); }));
    AddCount(bench, "requests of the second cat", 4, count([&] { Run({"cat", folder.Path(sFile)}); }));
}

void MeasureManyEntries(Bench& bench) {
    const size_t iEntries = bench.bFull ? 100000 : 20000;
    bench.phone.MakeFolder(iEntries);
    const MountedFolder folder(bench);
    Run({"ls", "-l", folder.Path("folder" + std::to_string(iEntries))});
    Row row{"memory with " + std::to_string(iEntries) + " entries", "at once", "MiB", kMemoryLimit_MiB,
            folder.Memory_MiB()};
    row.goal = kNotMore;
    bench.report.Add(row);
}

} // namespace

void MeasureMounted(Bench& bench) {
    bench.report.BeginTopic("mount (floor: wfxhost, limits)");
    bench.Set(kAfter1ms);
    MeasureCopies(bench, kAfter1ms);
    bench.Set(kAtOnce);
    CountRequests(bench);
    MeasureManyEntries(bench);
}

#else

void MeasureMounted(Bench&) {
    std::printf("\nmount: quillet-mount was not built\n");
}

#endif
