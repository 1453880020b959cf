// The phone's files as a POSIX folder: what the operations of the mounted folder mean on the phone.
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

/// PhoneFolder: paths begin with '/', as the phone takes them. All operations throw PosixError. One thread.
class PhoneFolder {
public:
    /// `mountPoint` is the absolute path of the mounted folder, for links that lead into it.
    PhoneFolder(PhoneSession& session, std::string mountPoint)
        : m_session(session), m_files(session), m_mountPoint(std::move(mountPoint)) {}

    OpenFiles& Files() { return m_files; }

    /// Attributes of an entry, of a link its own; what was known a moment ago is good enough.
    Attributes Look(const std::string& path);
    /// Where a link leads, so that it can be followed on this computer: an absolute path of the phone becomes
    /// one from the link's folder.
    std::string LinkTarget(const std::string& path);
    Space GetSpace();

    void MakeFolder(const std::string& path, uint32_t permissions);
    void RemoveFolder(const std::string& path);
    void RemoveFile(const std::string& path);
    /// `target` as the program gave it. Absolute ones must lead into the mounted folder (EPERM).
    void MakeLink(const std::string& path, const std::string& target);
    void Rename(const std::string& from, const std::string& to, bool mayReplace);
    void ChangeMode(const std::string& path, uint32_t permissions);

    /// Opens a file with the phone's flags. `isUnchanged`: it is what it was when it was last opened.
    OpenFilePtr Open(const std::string& path, DWORD flags, bool& isUnchanged);
    OpenFilePtr Create(const std::string& path, DWORD flags, uint32_t permissions);
    /// Touch makes the phone set a file's time to its own, by writing what the file has already.
    void Touch(const std::string& path);
    /// The content of a path has been changed.
    void Changed(const std::string& path) { m_cache.Forget(path); }

    /// The listing of a folder, when it is known.
    std::shared_ptr<const Listing> KnownListing(const std::string& folder);
    void Listed(const std::string& folder, std::shared_ptr<const Listing> listing);

    /// Gives the port back; open files are closed on the phone and opened again at their next use.
    void Idle();
    /// Closes everything.
    void End();

private:
    /// Order sends one request about a path, after which nothing is taken for known about it.
    template <class Call>
    void Order(const std::string& path, Call call);
    Attributes Ask(const std::string& path);
    void CheckEpoch();

    PhoneSession& m_session;
    OpenFiles m_files;
    AttributeCache m_cache;
    const std::string m_mountPoint;
    unsigned m_epoch = 0;
};

/// Throws PosixError (ENAMETOOLONG) for a path that the phone cannot open, or whose name it could not list.
void RequireUsablePath(const std::string& path);

} // namespace tools::mount
