// The handset's end of its line: the controlling side of a pseudo-terminal in raw mode.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace handset {

/// Exists while the handset is plugged in. Keeps the client's side open too, so that reads do not fail
/// between two clients; bytes that one client leaves unread go to the next. Destruction hangs up the line:
/// clients get errors and the path disappears.
class Line {
public:
    /// Throws std::system_error when no pseudo-terminal is available.
    Line();
    ~Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    /// The tty that clients open (/dev/pts/N).
    const std::string& Path() const { return m_path; }
    /// The descriptor to wait on.
    int Descriptor() const { return m_master; }

    /// Reads up to `size` available bytes; 0 when there are none. Never waits.
    size_t Read(uint8_t* buffer, size_t size);
    /// Writes as many bytes as the line accepts now and returns their number, possibly 0. Never waits.
    size_t Write(const uint8_t* data, size_t size);

private:
    int m_master = -1;
    int m_slave = -1;
    std::string m_path;
};

} // namespace handset
