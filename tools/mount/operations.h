// The operations that libfuse calls.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "mount/fuse.h"
#include "mount/phone_folder.h"
#include "mount/phone_thread.h"

namespace tools::mount {

/// What is mounted. It is the private data of the fuse object.
struct Mount {
    unsigned short wantedPort; // kAnyPort: whichever
    unsigned short port;       // on which a handset answered
    std::string mountPoint;
    std::chrono::milliseconds idle;

    // Made when the folder is mounted, after the program has gone to the background: threads do not survive
    // that.
    std::unique_ptr<PhoneSession> session;
    std::unique_ptr<PhoneFolder> folder;
    std::unique_ptr<PhoneThread> thread;
    // Whose all entries are, as the system is told.
    uid_t owner = 0;
    gid_t group = 0;

    /// Closes what programs left open on the phone, and gives the port back.
    void End();
};

/// The table of operations.
const fuse_operations& Operations();

} // namespace tools::mount
