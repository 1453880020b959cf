// A file descriptor with one owner.
#pragma once

#include <unistd.h>

#include <utility>

/// Descriptor owns a file descriptor and closes it; a negative one means none.
class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    Descriptor(Descriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() {
        if (m_fd >= 0)
            close(m_fd);
    }

    int Get() const { return m_fd; }
    bool IsValid() const { return m_fd >= 0; }

private:
    int m_fd;
};
