#include "mount/phone_folder.h"

#include <cstring>

#include "mount/link_targets.h"

namespace tools::mount {
namespace {

constexpr DWORD kWriteOnly = 1;
constexpr DWORD kReadWrite = 2;
constexpr DWORD kTruncate = 0x200;

} // namespace

void RequireUsablePath(const std::string& path) {
    if (path.size() > kLongestPath || NameOf(path).size() > kLongestName)
        throw PosixError{ENAMETOOLONG};
}

void PhoneFolder::CheckEpoch() {
    if (m_epoch != m_session.Epoch())
        m_cache.Clear();
    m_epoch = m_session.Epoch();
}

// --- Queries -------------------------------------------------------------------------------------------

Attributes PhoneFolder::Look(const std::string& path) {
    RequireUsablePath(path);
    CheckEpoch();
    Attributes attributes;
    const AttributeCache::Knowledge known = m_cache.Find(path, attributes);
    if (known == AttributeCache::Knowledge::Missing)
        throw PosixError{ENOENT};
    if (known == AttributeCache::Knowledge::Unknown) {
        attributes = QueryAttributes(path);
        m_cache.Remember(path, attributes);
    }
    m_files.SizeReported(path, attributes.size);
    return attributes;
}

/// Queries the attributes of a path. The phone follows links when it is asked for attributes, so it is first
/// asked whether the path is a link, unless the path was not a link before and has not changed.
Attributes PhoneFolder::QueryAttributes(const std::string& path) {
    const std::optional<Attributes> before = m_cache.LastKnown(path);
    if (path == "/" || m_files.IsOpen(path))
        return Stat(m_session, path);
    if (before && !before->IsLink()) {
        const Attributes now = Stat(m_session, path);
        if (now.IsSameVersion(*before))
            return now;
    }
    try {
        Attributes link;
        link.mode = S_IFLNK | 0777;
        link.size = static_cast<uint32_t>(LinkTarget(path).size());
        return link;
    } catch (const PosixError& error) {
        if (error.number == ENOENT || error.number == ENOTDIR || error.number == EIO)
            throw;
    }
    return Stat(m_session, path);
}

std::string PhoneFolder::LinkTarget(const std::string& path) {
    RequireUsablePath(path);
    char target[Diag_FTM::kEfs2TextSize] = "";
    m_session.Query([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_LINK_TARGET(path.c_str(), target, error);
    });
    if (std::strlen(target) == sizeof target - 1)
        throw PosixError{ENAMETOOLONG}; // it may be truncated
    return ShownTarget(path, target);
}

Space PhoneFolder::GetSpace() {
    Space space;
    m_session.Query([&](Diag_FTM& phone, DWORD& error) {
        DWORD id = 0, type = 0, largest = 0;
        return phone.EFS2_DIAG_STATFS("/", error, id, type, space.blockSize, space.totalBlocks,
                                      space.availableBlocks, space.freeBlocks, largest, space.files,
                                      space.mostFiles);
    });
    return space;
}

std::shared_ptr<const Listing> PhoneFolder::KnownListing(const std::string& folder) {
    CheckEpoch();
    return m_cache.KnownListing(folder);
}

void PhoneFolder::Listed(const std::string& folder, std::shared_ptr<const Listing> listing) {
    CheckEpoch();
    m_cache.Remember(folder, std::move(listing));
}

// --- Changing names ------------------------------------------------------------------------------------

template <class Call>
void PhoneFolder::Change(const std::string& path, Call call) {
    RequireUsablePath(path);
    m_cache.Forget(path);
    m_cache.ForgetAttributes(FolderOf(path)); // its time and its link count change
    m_session.Order(call);
}

void PhoneFolder::MakeFolder(const std::string& path, uint32_t permissions) {
    Change(path, [&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_MAKE_DIRECTORY(path.c_str(), permissions, error);
    });
}

void PhoneFolder::RemoveFolder(const std::string& path) {
    Change(path, [&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_REMOVE_DIRECTORY(path.c_str(), error);
    });
}

void PhoneFolder::RemoveFile(const std::string& path) {
    Change(path,
           [&](Diag_FTM& phone, DWORD& error) { return phone.EFS2_DIAG_REMOVE_FILE(path.c_str(), error); });
}

void PhoneFolder::MakeLink(const std::string& path, const std::string& target) {
    const std::string stored = StoredTarget(target, m_mountPoint);
    Change(path, [&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_MAKE_LINK(path.c_str(), stored.c_str(), error);
    });
}

void PhoneFolder::Rename(const std::string& from, const std::string& to, bool mayReplace) {
    RequireUsablePath(from);
    RequireUsablePath(to);
    if (!mayReplace) {
        try {
            Look(to);
            throw PosixError{EEXIST};
        } catch (const PosixError& error) {
            if (error.number != ENOENT)
                throw;
        }
    }
    m_cache.Forget(to);
    m_cache.ForgetAttributes(FolderOf(to));
    Change(from, [&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_RENAME(from.c_str(), to.c_str(), error = EIO);
    });
    m_files.Renamed(from, to);
}

void PhoneFolder::ChangeMode(const std::string& path, uint32_t permissions) {
    RequireUsablePath(path);
    m_cache.Forget(path);
    m_session.Order([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_CHMOD(permissions, path.c_str(), error = EIO);
    });
}

// --- Files ---------------------------------------------------------------------------------------------

OpenFilePtr PhoneFolder::Open(const std::string& path, DWORD flags, bool& isUnchanged) {
    const Attributes attributes = Look(path);
    if (attributes.IsFolder())
        throw PosixError{EISDIR};
    isUnchanged = m_cache.OpenedVersion(path, attributes);
    OpenFilePtr file = m_files.Open(path, flags, 0);
    file->reportedSize = attributes.size;
    if (flags & kTruncate) {
        file->isWritten = true;
        file->reportedSize = 0;
        isUnchanged = false;
        Changed(path);
    }
    return file;
}

OpenFilePtr PhoneFolder::Create(const std::string& path, DWORD flags, uint32_t permissions) {
    RequireUsablePath(path);
    m_cache.Forget(path);
    m_cache.ForgetAttributes(FolderOf(path));
    OpenFilePtr file = m_files.Open(path, flags, permissions);
    file->isWritten = true;
    return file;
}

void PhoneFolder::Touch(const std::string& path) {
    const Attributes now = Stat(m_session, path);
    if (!S_ISREG(now.mode))
        throw PosixError{EPERM};
    const bool isEmpty = now.size == 0;
    const OpenFilePtr file = m_files.Open(path, isEmpty ? kWriteOnly | kTruncate : kReadWrite, 0);
    file->isWritten = true;
    Changed(path);
    const auto rewrite = [&] {
        unsigned char first = 0;
        if (!isEmpty && m_files.Read(*file, 0, std::span(&first, 1)) == 1)
            m_files.Write(*file, 0, std::span(&first, 1));
        m_files.Settle(*file);
    };
    m_files.With(file, rewrite);
}

void PhoneFolder::Idle() {
    m_cache.DropListings();
    m_files.Park();
    m_session.GiveBack();
}

void PhoneFolder::End() {
    m_files.CloseAll();
    m_session.GiveBack();
}

} // namespace tools::mount
