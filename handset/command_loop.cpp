// Where the simulated-handset program's commands come from.
#include "handset/command_loop.h"

#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <system_error>
#include <vector>

namespace handset {
namespace {

[[noreturn]] void Fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

int ListenOn(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        Fail(path);
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    struct stat existing {};
    if (lstat(path.c_str(), &existing) == 0 && S_ISSOCK(existing.st_mode))
        unlink(path.c_str()); // left over from an earlier run
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (listener < 0 || bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener, 8) != 0)
        Fail(path);
    return listener;
}

/// Gives up on a client that does not read its output.
void WriteAll(int output, const std::string& text) {
    for (size_t at = 0; at < text.size();) {
        const ssize_t count = write(output, text.data() + at, text.size() - at);
        if (count > 0) {
            at += static_cast<size_t>(count);
            continue;
        }
        pollfd wait = {output, POLLOUT, 0};
        const bool again = errno == EAGAIN && poll(&wait, 1, 2000) > 0;
        if (!again && errno != EINTR)
            return;
    }
}

} // namespace

CommandLoop::CommandLoop(const std::string& socketPath) : m_socketPath(socketPath) {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGTTIN, SIG_IGN); // in the background of a terminal, reading fails instead of stopping us
    sigset_t endings;
    sigemptyset(&endings);
    sigaddset(&endings, SIGINT);
    sigaddset(&endings, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endings, nullptr);
    m_signals = signalfd(-1, &endings, SFD_CLOEXEC);
    if (m_signals < 0)
        Fail("signalfd");
    if (!m_socketPath.empty())
        m_listener = ListenOn(m_socketPath);
    m_sources[STDIN_FILENO].output = STDOUT_FILENO;
}

CommandLoop::~CommandLoop() {
    while (!m_sources.empty())
        Drop(m_sources.begin()->first);
    close(m_signals);
    if (m_listener >= 0) {
        close(m_listener);
        unlink(m_socketPath.c_str());
    }
}

void CommandLoop::Serve(const std::function<std::string(const std::string&)>& run,
                        const std::function<bool()>& wantsToQuit) {
    while (!wantsToQuit()) {
        std::vector<pollfd> waits = {{m_signals, POLLIN, 0}, {m_listener, POLLIN, 0}};
        for (const auto& [input, source] : m_sources)
            waits.push_back({input, POLLIN, 0});
        if (poll(waits.data(), waits.size(), -1) < 0 && errno != EINTR)
            return;
        if (waits[0].revents)
            return;
        if (waits[1].revents)
            Accept();
        for (size_t i = 2; i < waits.size() && !wantsToQuit(); ++i)
            if (waits[i].revents && !ReadFrom(waits[i].fd, m_sources[waits[i].fd], run))
                Drop(waits[i].fd);
    }
}

void CommandLoop::Accept() {
    const int client = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (client >= 0)
        m_sources[client].output = client;
}

bool CommandLoop::ReadFrom(int input, Source& source,
                           const std::function<std::string(const std::string&)>& run) {
    char buffer[4096];
    const ssize_t count = read(input, buffer, sizeof buffer);
    if (count <= 0)
        return count < 0 && (errno == EAGAIN || errno == EINTR);
    source.line.append(buffer, static_cast<size_t>(count));
    for (size_t end = source.line.find('\n'); end != std::string::npos; end = source.line.find('\n')) {
        const std::string line = source.line.substr(0, end);
        source.line.erase(0, end + 1);
        WriteAll(source.output, run(line));
    }
    return true;
}

void CommandLoop::Drop(int input) {
    m_sources.erase(input);
    if (input != STDIN_FILENO)
        close(input);
}

} // namespace handset
