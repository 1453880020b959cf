// The handset's end of its line.
#include "handset/line.h"

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace handset {
namespace {

[[noreturn]] void Fail(int master, const char* what) {
    const int error = errno;
    if (master >= 0)
        close(master);
    throw std::system_error(error, std::generic_category(), what);
}

} // namespace

Line::Line() {
    m_master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    char path[64];
    if (m_master < 0 || grantpt(m_master) || unlockpt(m_master) || ptsname_r(m_master, path, sizeof path))
        Fail(m_master, "pseudo-terminal");
    m_path = path;
    m_slave = open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_slave < 0)
        Fail(m_master, path);
    termios settings{};
    tcgetattr(m_slave, &settings);
    cfmakeraw(&settings);
    cfsetspeed(&settings, B115200);
    tcsetattr(m_slave, TCSANOW, &settings);
}

Line::~Line() {
    close(m_slave);
    close(m_master);
}

size_t Line::Read(uint8_t* buffer, size_t size) {
    const ssize_t count = read(m_master, buffer, size);
    return count > 0 ? static_cast<size_t>(count) : 0;
}

size_t Line::Write(const uint8_t* data, size_t size) {
    const ssize_t count = write(m_master, data, size);
    return count > 0 ? static_cast<size_t>(count) : 0;
}

} // namespace handset
