// The files that programs have open.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "mount/attributes.h"
#include "mount/phone_session.h"

namespace tools::mount {

/// One open file of a program. It may be closed on the phone for the time being.
struct OpenFile {
    std::string path;
    DWORD access = 0;     // 0 read, 1 write, 2 both
    LONG descriptor = -1; // on the phone; -1: closed there, and opened again at the next use
    unsigned epoch = 0;   // of the session in which it was opened
    bool isWritten = false;
    uint64_t reportedSize = 0;        // the size last reported to the system
    std::optional<Attributes> parked; // the attributes of the file when the port was closed
};
using OpenFilePtr = std::shared_ptr<OpenFile>;

/// OpenFiles performs all operations on open files. They throw PosixError. A file that was open when the
/// phone was lost fails with EIO from then on. One thread.
class OpenFiles {
public:
    explicit OpenFiles(PhoneSession& session) : m_session(session) {}

    /// Opens a file with the phone's flags and permission bits.
    OpenFilePtr Open(const std::string& path, DWORD flags, DWORD permissions);
    /// Reads up to one block. Returns fewer bytes than requested, or none, at the end of the file.
    size_t Read(OpenFile& file, uint64_t offset, std::span<unsigned char> area);
    /// Writes the first bytes of `data`, at least one, and returns their number.
    size_t Write(OpenFile& file, uint64_t offset, std::span<const unsigned char> data);
    /// Closes a written file on the phone, because only closing shows whether everything was written.
    void Settle(OpenFile& file);
    /// Ends the use of a file.
    void Release(OpenFile& file);

    /// Runs `work` and then releases the file, also after an exception.
    template <class Work>
    void With(const OpenFilePtr& file, Work work) {
        try {
            work();
        } catch (...) {
            Release(*file);
            throw;
        }
        Release(*file);
    }

    /// Closes all open files of a path on the phone, because another file will take the path.
    void Detach(const std::string& path);
    /// Adapts the paths of open files to a renamed file or folder.
    void Renamed(const std::string& from, const std::string& to);
    /// True when a program has the file open. The path is then not a link.
    bool IsOpen(const std::string& path) const;
    /// Records the size of a path that was reported to the system.
    void SizeReported(const std::string& path, uint64_t size);
    /// Closes all files on the phone before the port is closed, and records their attributes.
    void Park();
    /// Closes all files on the phone.
    void CloseAll();

private:
    void Ensure(OpenFile& file);
    void Reopen(OpenFile& file);
    void CloseOnPhone(OpenFile& file);
    void Quietly(void (OpenFiles::*work)(OpenFile&), OpenFile& file);

    PhoneSession& m_session;
    std::vector<OpenFilePtr> m_files;
};

/// Queries the attributes of a path on the phone. Links are followed.
Attributes Stat(PhoneSession& session, const std::string& path);

} // namespace tools::mount
