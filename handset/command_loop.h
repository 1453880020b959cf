// Where the simulated-handset program's commands come from: standard input and a socket.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace handset {

/// Reads command lines from standard input and from the clients of a unix stream socket, and writes the
/// output back to the source. Belongs to one thread. Make it before the first handset: it blocks SIGINT and
/// SIGTERM in this thread, and threads started later inherit that.
class CommandLoop {
public:
    /// Listens on `socketPath` ("": no socket). Throws std::system_error on failure.
    explicit CommandLoop(const std::string& socketPath);
    /// Closes all connections and removes the socket's file.
    ~CommandLoop();
    CommandLoop(const CommandLoop&) = delete;
    CommandLoop& operator=(const CommandLoop&) = delete;

    /// Serves until SIGINT or SIGTERM arrives or `wantsToQuit` returns true. `run` returns the output of a
    /// line.
    void Serve(const std::function<std::string(const std::string& line)>& run,
               const std::function<bool()>& wantsToQuit);

private:
    struct Source {
        int output = -1;
        std::string line; // incomplete so far
    };

    void Accept();
    /// False when the source has ended.
    bool ReadFrom(int input, Source& source, const std::function<std::string(const std::string&)>& run);
    void Drop(int input);

    std::string m_socketPath;
    int m_signals = -1;
    int m_listener = -1;
    std::map<int, Source> m_sources; // by input descriptor
};

} // namespace handset
