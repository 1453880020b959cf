// The folder that is mounted on, and the handset that is mounted once.
#pragma once

#include <string>

namespace tools::mount {

/// RequireMountPoint gives the absolute path of an empty folder. Throws Failure for anything else.
std::string RequireMountPoint(const std::string& folder);

/// MountedOnce holds a handset's place: while it lives, no other process gets one for the same port.
class MountedOnce {
public:
    /// Throws Failure when the handset is mounted already.
    explicit MountedOnce(unsigned short port);
    ~MountedOnce();
    MountedOnce(const MountedOnce&) = delete;
    MountedOnce& operator=(const MountedOnce&) = delete;

private:
    int m_socket;
};

} // namespace tools::mount
