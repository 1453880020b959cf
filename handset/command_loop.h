// Where the simulated-handset program's commands come from: standard input and a socket.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace handset {

/// Reads command lines from standard input and from the clients of a unix stream socket, answers each where
/// it came from, and ends at SIGINT, SIGTERM or when told. Belongs to one thread, which no handset may have
/// been made before: the signals are blocked in it and so in every later thread.
class CommandLoop {
public:
    /// Listens on `socketPath` ("" : no socket). Throws std::system_error when that cannot be done.
    explicit CommandLoop(const std::string& socketPath);
    /// Closes all and removes the socket's file.
    ~CommandLoop();
    CommandLoop(const CommandLoop&) = delete;
    CommandLoop& operator=(const CommandLoop&) = delete;

    /// Serves until a signal, or until `wantsToQuit` after a command. `run` gives the answer to a line.
    void Serve(const std::function<std::string(const std::string& line)>& run,
               const std::function<bool()>& wantsToQuit);

private:
    struct Source {
        int output = -1;
        std::string line; // the beginning of one
    };

    void Accept();
    /// False when the source has ended.
    bool ReadFrom(int input, Source& source, const std::function<std::string(const std::string&)>& run);
    void Drop(int input);

    std::string m_socketPath;
    int m_signals = -1;
    int m_listener = -1;
    std::map<int, Source> m_sources; // by the descriptor to read from
};

} // namespace handset
