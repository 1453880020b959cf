// Checks before mounting: the folder, and that the phone is not mounted yet.
#pragma once

#include <string>

namespace tools::mount {

/// Returns the absolute path of an empty folder. Throws Failure for anything else.
std::string RequireMountPoint(const std::string& folder);

/// MountedOnce reserves a phone: while it exists, no other process can make one for the same port.
class MountedOnce {
public:
    /// Throws Failure when the phone is already mounted.
    explicit MountedOnce(unsigned short port);
    ~MountedOnce();
    MountedOnce(const MountedOnce&) = delete;
    MountedOnce& operator=(const MountedOnce&) = delete;

private:
    int m_socket;
};

} // namespace tools::mount
