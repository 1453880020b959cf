// Folders and pseudo-terminals that simulate the machine's devices.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <stdexcept>

#include "local_folder.h"

/// DeviceFolder is a temporary folder. QUILLET_DEVICE_ROOT names it for the object's lifetime.
class DeviceFolder : public LocalFolder {
public:
    DeviceFolder() { setenv("QUILLET_DEVICE_ROOT", Path().c_str(), 1); }
    ~DeviceFolder() { unsetenv("QUILLET_DEVICE_ROOT"); }

    /// These functions create a file, a folder or a link, and the missing folders above it. Link replaces an
    /// old link.
    void Write(const std::string& sName, const std::string& sContent) const {
        std::ofstream(Made(sName), std::ios::binary) << sContent;
    }
    void MakeFolder(const std::string& sName) const { std::filesystem::create_directories(Path(sName)); }
    void Link(const std::string& sName, const std::filesystem::path& target) const {
        std::filesystem::remove(Made(sName));
        std::filesystem::create_symlink(target, Path(sName));
    }

private:
    std::filesystem::path Made(const std::string& sName) const {
        const std::filesystem::path path = Path(sName);
        std::filesystem::create_directories(path.parent_path());
        return path;
    }
};

/// PtyDevice is the device's end of a pseudo-terminal. A DeviceFolder shows the other end as dev/`sTty`.
class PtyDevice {
public:
    PtyDevice(const DeviceFolder& folder, const std::string& sTty) : m_fd(posix_openpt(O_RDWR | O_NOCTTY)) {
        char aName[64];
        if (m_fd < 0 || grantpt(m_fd) != 0 || unlockpt(m_fd) != 0 ||
            ptsname_r(m_fd, aName, sizeof(aName)) != 0)
            throw std::runtime_error("no pseudo-terminal");
        m_sSlaveName = aName;
        folder.Link("dev/" + sTty, m_sSlaveName);
    }
    ~PtyDevice() { HangUp(); }
    PtyDevice(const PtyDevice&) = delete;
    PtyDevice& operator=(const PtyDevice&) = delete;

    int Descriptor() const { return m_fd; }
    const std::string& SlaveName() const { return m_sSlaveName; }

    void Send(const std::string& sBytes) const {
        ASSERT_EQ(write(m_fd, sBytes.data(), sBytes.size()), static_cast<ssize_t>(sBytes.size()));
    }
    /// Waits for exactly `iCount` bytes and returns them.
    std::string Take(size_t iCount) const {
        std::string sBytes(iCount, '\0');
        size_t iHave = 0;
        while (iHave < iCount) {
            const ssize_t iRead = read(m_fd, &sBytes[iHave], iCount - iHave);
            if (iRead <= 0)
                throw std::runtime_error("the port was closed");
            iHave += static_cast<size_t>(iRead);
        }
        return sBytes;
    }
    void HangUp() {
        if (m_fd >= 0)
            close(m_fd);
        m_fd = -1;
    }

private:
    int m_fd;
    std::string m_sSlaveName;
};
