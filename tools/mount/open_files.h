// The files that programs hold open.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "mount/attributes.h"
#include "mount/phone_session.h"

namespace tools::mount {

/// One open file of a program. On the phone it may be open or, for the time being, not.
struct OpenFile {
    std::string path;
    DWORD access = 0;     // 0 read, 1 write, 2 both
    LONG descriptor = -1; // on the phone; -1: closed there, and opened again at the next use
    unsigned epoch = 0;   // of the session in which it was opened
    bool isWritten = false;
    uint64_t toldSize = 0;            // the size that the system was last told
    std::optional<Attributes> parked; // what the file was when the port was given back
};
using OpenFilePtr = std::shared_ptr<OpenFile>;

/// OpenFiles carries out what is done with open files, and knows all of them. All operations throw
/// PosixError. A file that was open when the handset was lost fails with EIO for good. One thread.
class OpenFiles {
public:
    explicit OpenFiles(PhoneSession& session) : m_session(session) {}

    /// Opens a file; the flags and the permission bits are those of the phone.
    OpenFilePtr Open(const std::string& path, DWORD flags, DWORD permissions);
    /// Reads up to a block; fewer bytes than asked for, none included, at the file's end.
    size_t Read(OpenFile& file, uint64_t offset, std::span<unsigned char> area);
    /// Writes the first bytes of `data`, at least one, and gives their number.
    size_t Write(OpenFile& file, uint64_t offset, std::span<const unsigned char> data);
    /// Settle closes a file on the phone that was written: the phone says only then whether all is well.
    void Settle(OpenFile& file);
    /// Release ends the use of a file.
    void Release(OpenFile& file);

    /// With releases a file behind `work`, however that ends.
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

    /// Detach closes all open files of a path on the phone, because another file takes its place.
    void Detach(const std::string& path);
    /// Open files follow a renaming, of themselves or of a folder above them.
    void Renamed(const std::string& from, const std::string& to);
    /// True when a program has the file open. It is no link, then.
    bool IsOpen(const std::string& path) const;
    /// The system has been told this size of a path.
    void Told(const std::string& path, uint64_t size);
    /// Park closes all files on the phone and remembers what they were: the port is given back.
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

/// Stat asks the phone about what a path leads to, links followed.
Attributes Stat(PhoneSession& session, const std::string& path);

} // namespace tools::mount
