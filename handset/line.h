// The handset's end of its line: the controlling side of a pseudo-terminal in raw mode.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace handset {

/// Exists while the handset is plugged in. The other side is held open too, so that reading does not fail
/// between two clients; what a client leaves unread waits for the next one. Destruction hangs the line up:
/// clients get errors and the path is gone.
class Line {
public:
    /// Throws std::system_error when the system gives no pseudo-terminal.
    Line();
    ~Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    /// The tty that clients open (/dev/pts/N).
    const std::string& Path() const { return m_path; }
    /// To wait on.
    int Descriptor() const { return m_master; }

    /// Reads what is there, up to `size` bytes; 0 when there is nothing. Never waits.
    size_t Read(uint8_t* buffer, size_t size);
    /// Writes what the line takes now; 0 when it takes nothing. Never waits.
    size_t Write(const uint8_t* data, size_t size);

private:
    int m_master = -1;
    int m_slave = -1;
    std::string m_path;
};

} // namespace handset
