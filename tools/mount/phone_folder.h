// The phone's files as a POSIX folder: the operations of the mounted folder as requests to the phone.
#pragma once

#include <memory>
#include <string>

#include "mount/attribute_cache.h"
#include "mount/open_files.h"
#include "mount/phone_session.h"

namespace tools::mount {

struct Space {
    DWORD blockSize = 0;
    DWORD totalBlocks = 0;
    DWORD freeBlocks = 0;
    DWORD availableBlocks = 0;
    DWORD files = 0;
    DWORD mostFiles = 0;
};

/// The longest path that can be opened, and the longest name that a listing shows.
constexpr size_t kLongestPath = 243;
constexpr size_t kLongestName = 215;

/// Paths begin with '/', as on the phone. All operations throw PosixError. One thread.
class PhoneFolder {
public:
    /// `mountPoint` is the absolute path of the mounted folder; links into it are allowed.
    PhoneFolder(PhoneSession& session, std::string mountPoint)
        : m_session(session), m_files(session), m_mountPoint(std::move(mountPoint)) {}

    OpenFiles& Files() { return m_files; }

    /// Returns the attributes of an entry; of a link, its own. They may be a moment old.
    Attributes Look(const std::string& path);
    /// Returns the target of a link in a form that can be followed on this computer: an absolute path of the
    /// phone becomes relative to the link's folder.
    std::string LinkTarget(const std::string& path);
    Space GetSpace();

    void MakeFolder(const std::string& path, uint32_t permissions);
    void RemoveFolder(const std::string& path);
    void RemoveFile(const std::string& path);
    /// `target` is the text that the program passed. An absolute one must lead into the mounted folder
    /// (EPERM).
    void MakeLink(const std::string& path, const std::string& target);
    void Rename(const std::string& from, const std::string& to, bool mayReplace);
    void ChangeMode(const std::string& path, uint32_t permissions);

    /// Opens a file with the phone's flags. `isUnchanged` is true when the file has not changed since it was
    /// last opened.
    OpenFilePtr Open(const std::string& path, DWORD flags, bool& isUnchanged);
    OpenFilePtr Create(const std::string& path, DWORD flags, uint32_t permissions);
    /// Makes the phone set the file's time to the present, by writing data that the file already has.
    void Touch(const std::string& path);
    /// Must be called when the content of a path has been changed.
    void Changed(const std::string& path) { m_cache.Forget(path); }

    /// Returns the listing of a folder if it is known, else null.
    std::shared_ptr<const Listing> KnownListing(const std::string& folder);
    /// Stores a listing.
    void Listed(const std::string& folder, std::shared_ptr<const Listing> listing);

    /// Closes the port. Open files are closed on the phone and opened again at their next use.
    void Idle();
    /// Closes everything.
    void End();

private:
    /// Sends a request that changes a path, and forgets what was known about it.
    template <class Call>
    void Change(const std::string& path, Call call);
    Attributes QueryAttributes(const std::string& path);
    void CheckEpoch();

    PhoneSession& m_session;
    OpenFiles m_files;
    AttributeCache m_cache;
    const std::string m_mountPoint;
    unsigned m_epoch = 0;
};

/// Throws PosixError (ENAMETOOLONG) for a path that the phone cannot open, or whose name a listing could not
/// contain.
void RequireUsablePath(const std::string& path);

} // namespace tools::mount
