// wfxhost on Linux.
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>
#include <vector>

#include "common/interrupt.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kReadyLimit = std::chrono::seconds(15);
/// The response time of the simulated handset, about that of a real one.
constexpr const char* kLatency_us = "5000";
constexpr auto kEndLimit = std::chrono::seconds(5);

class Child : public SimulatedHandset {
public:
    Child(pid_t pid, int output) : m_pid(pid), m_output(output) {}
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    ~Child() override {
        kill(m_pid, SIGTERM);
        const auto end = Clock::now() + kEndLimit;
        while (waitpid(m_pid, nullptr, WNOHANG) == 0) {
            if (Clock::now() > end) {
                kill(m_pid, SIGKILL);
                waitpid(m_pid, nullptr, 0);
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        close(m_output);
    }

    /// Reads the output of the child up to its line "ready ...". False when the child ends first or takes too
    /// long.
    bool WaitUntilReady() const {
        std::string text;
        const auto end = Clock::now() + kReadyLimit;
        while (!text.starts_with("ready") && text.find("\nready") == std::string::npos) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
            pollfd wanted = {m_output, POLLIN, 0};
            if (left <= 0 || (poll(&wanted, 1, static_cast<int>(left)) < 0 && errno != EINTR))
                return false;
            char piece[256];
            const ssize_t count = wanted.revents ? read(m_output, piece, sizeof piece) : 0;
            if (wanted.revents && count <= 0)
                return false;
            text.append(piece, static_cast<size_t>(count));
        }
        return true;
    }

private:
    pid_t m_pid;
    int m_output;
};

/// Runs in the forked child. The child has a session of its own, so that Ctrl-C at the terminal reaches only
/// wfxhost, which then ends it cleanly. It does not outlive wfxhost.
[[noreturn]] void RunChild(char* const* arguments, pid_t parent, int output) {
    setsid();
    std::signal(SIGPIPE, SIG_DFL); // wfxhost ignores it
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int nothing = open("/dev/null", O_RDONLY);
    if (getppid() != parent || nothing < 0 || dup2(nothing, 0) < 0 || dup2(output, 1) < 0)
        _exit(127);
    execv(arguments[0], arguments);
    _exit(127);
}

} // namespace

std::string ProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::string DefaultPluginName() {
    return "quillet.wfx";
}

void* OpenLibrary(const std::string& path, std::string& reason) {
    // dlopen searches the system's library folders for a name without a slash.
    void* library = dlopen(std::filesystem::absolute(path).c_str(), RTLD_LAZY);
    if (!library) {
        const char* text = dlerror();
        reason = text ? text : "unknown reason";
    }
    return library;
}

void* FindSymbol(void* library, const char* name) {
    return dlsym(library, name);
}

void CloseLibrary(void* library) {
    dlclose(library);
}

void ClearLastError() {
    errno = 0;
}

bool LastErrorSaysNoMoreFiles() {
    return errno == ENODATA;
}

std::string LocalNameKey(const std::string& name) {
    return name == "." || name == ".." || name.find('/') != std::string::npos ? "" : name;
}

long ReadInput(char* bytes, size_t room) {
    constexpr int kLookAgain_ms = 200; // a Ctrl-C just before poll() does not interrupt it
    while (!Interrupted()) {
        pollfd wanted = {STDIN_FILENO, POLLIN, 0};
        const int ready = poll(&wanted, 1, kLookAgain_ms);
        if (ready > 0)
            return read(STDIN_FILENO, bytes, room);
        if (ready < 0 && errno != EINTR)
            return -1;
    }
    return -1;
}

void MakeOutputBinary() {} // it always is

std::unique_ptr<SimulatedHandset> StartSimulatedHandset(const std::string& deviceRoot, std::string& reason) {
    const std::string program = ProgramFolder() + "/simulated-handset";
    if (access(program.c_str(), X_OK) != 0) {
        reason = "there is no program " + program;
        return nullptr;
    }
    std::string texts[] = {program, "--device-root", deviceRoot, "--latency", kLatency_us};
    std::vector<char*> arguments;
    for (std::string& text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        reason = std::strerror(errno);
        return nullptr;
    }
    const pid_t parent = getpid();
    const pid_t pid = fork();
    if (pid == 0)
        RunChild(arguments.data(), parent, ends[1]);
    close(ends[1]);
    if (pid < 0) {
        reason = std::strerror(errno);
        close(ends[0]);
        return nullptr;
    }
    auto child = std::make_unique<Child>(pid, ends[0]);
    if (!child->WaitUntilReady()) {
        reason = program + " did not become ready";
        return nullptr;
    }
    setenv("QUILLET_DEVICE_ROOT", deviceRoot.c_str(), 1);
    return child;
}

} // namespace tools::wfxhost
