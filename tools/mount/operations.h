// The operations that libfuse calls.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "mount/fuse.h"
#include "mount/phone_folder.h"
#include "mount/phone_thread.h"

namespace tools::mount {

/// The state of the mount, and the private data of the fuse object.
struct Mount {
    unsigned short wantedPort; // kAnyPort: any
    unsigned short port;       // on which a handset answered
    std::string mountPoint;
    std::chrono::milliseconds idle;

    // Made when the folder is mounted, after the program has gone to the background, because threads would
    // not survive that.
    std::unique_ptr<PhoneSession> session;
    std::unique_ptr<PhoneFolder> folder;
    std::unique_ptr<PhoneThread> thread;
    // The owner and group of all entries, as reported to the system.
    uid_t owner = 0;
    gid_t group = 0;

    /// Closes all files that are open on the phone, and the port.
    void End();
};

/// The table of operations.
const fuse_operations& Operations();

} // namespace tools::mount
