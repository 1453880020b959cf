#include "mount/mount_point.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "common/failure.h"
#include "common/text.h"

namespace tools::mount {
namespace {

namespace fs = std::filesystem;

/// Returns an abstract socket address for a port. The kernel frees it when the process ends, whatever ends
/// it. Ports of another device root are other ports.
sockaddr_un PlaceOf(unsigned short port, socklen_t& length) {
    const char* const root = std::getenv("QUILLET_DEVICE_ROOT");
    const std::string name = "quillet-mount COM" + std::to_string(port) + " " +
                             std::to_string(std::hash<std::string>()(root ? root : ""));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + 1, name.data(), name.size());
    length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    return address;
}

} // namespace

std::string RequireMountPoint(const std::string& folder) {
    std::error_code error;
    if (!fs::is_directory(folder, error))
        throw Failure(Quoted(folder) + " is not a folder" + (error ? ": " + error.message() : ""));
    const bool isEmpty = fs::is_empty(folder, error);
    if (error)
        throw Failure(Quoted(folder) + ": " + error.message());
    if (!isEmpty)
        throw Failure(Quoted(folder) +
                      " is not empty; its content would be hidden while the handset is mounted there");
    return fs::canonical(folder).string();
}

MountedOnce::MountedOnce(unsigned short port) : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    socklen_t length = 0;
    const sockaddr_un address = PlaceOf(port, length);
    if (m_socket < 0 || bind(m_socket, reinterpret_cast<const sockaddr*>(&address), length) == 0)
        return;
    const bool isTaken = errno == EADDRINUSE;
    close(m_socket);
    if (isTaken)
        throw Failure("the handset on COM" + std::to_string(port) + " is already mounted");
    m_socket = -1;
}

MountedOnce::~MountedOnce() {
    if (m_socket >= 0)
        close(m_socket);
}

} // namespace tools::mount
