// The flash file system of the simulated handset: a tree of folders, files and symbolic links, open
// descriptors and open folders, with the error numbers that the phone reports.
//
// A FileSystem has no lock: the handset uses its own under its lock and hands it out with
// Handset::WithFiles. Paths are separated by '/', with or without one at the beginning, repeated ones count
// once, "." and ".." are understood; the empty path is the root. A name has 1 to 255 bytes, any but '/' and
// 0. Links may be relative or absolute and are followed everywhere but in the last name of what is removed,
// renamed, read as a link or newly made.
//
// Permissions are obeyed where a file or folder is opened, by the owner's bits; nothing else asks them. A
// change time moves with content, name and permissions.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "handset/node.h"

namespace handset {

/// The error numbers in the answers.
enum class Errnum : uint32_t {
    None = 0,
    NotFound = 2,      // ENOENT
    BadDescriptor = 9, // EBADF
    NoAccess = 13,     // EACCES
    Busy = 16,         // EBUSY: the root is not removed or renamed
    Exists = 17,       // EEXIST
    NotFolder = 20,    // ENOTDIR
    IsFolder = 21,     // EISDIR
    Invalid = 22,      // EINVAL
    TooManyOpen = 24,  // EMFILE
    FileTooBig = 27,   // EFBIG
    NoSpace = 28,      // ENOSPC
    NameTooLong = 36,  // ENAMETOOLONG
    NotEmpty = 39,     // ENOTEMPTY
    LinkLoop = 40,     // ELOOP
};

/// Flags of Open; the lowest two bits are the access mode.
enum OpenFlags : uint32_t {
    kReadOnly = 0,
    kWriteOnly = 1,
    kReadWrite = 2,
    kAccessMask = 3,
    kCreate = 0x40,
    kExclusive = 0x80,
    kTruncate = 0x200,
    kAppend = 0x400,
};

/// What STAT reports.
struct Status {
    uint32_t mode = 0;
    uint32_t size = 0;
    uint32_t linkCount = 0;
    Times times;
};

/// What READDIR reports of one entry. At the end of the folder everything is 0 and the name empty.
struct FolderEntry {
    Kind kind = Kind::File;
    uint32_t mode = 0;
    uint32_t size = 0;
    Times times;
    std::string name;
};

/// What STATFS reports; avail and free blocks are the same here.
struct SpaceStatus {
    uint32_t blockSize = 0;
    uint32_t totalBlocks = 0;
    uint32_t freeBlocks = 0;
    uint32_t maxFileSize = 0;
    uint32_t nodes = 0;
    uint32_t maxNodes = 0;
};

/// One line of a full listing.
struct Listed {
    std::string path; // begins with '/'
    Kind kind = Kind::File;
    uint32_t size = 0;
};

class FileSystem {
public:
    static constexpr uint32_t kMaxFileSize = 256u * 1024 * 1024;

    FileSystem();
    ~FileSystem();
    FileSystem(const FileSystem&) = delete;
    FileSystem& operator=(const FileSystem&) = delete;

    // --- Files -----------------------------------------------------------------------------------------

    /// Opens a file; `permissions` are those of a file that it makes. Descriptors are 0, 1, 2 ... and none is
    /// given out twice. `descriptor` is -1 on failure.
    Errnum Open(const std::string& path, uint32_t flags, uint32_t permissions, int32_t& descriptor);
    Errnum Close(int32_t descriptor);
    /// Reads up to `count` bytes at `offset`; fewer, also none, at the end of the file.
    Errnum Read(int32_t descriptor, uint32_t count, uint32_t offset, Bytes& data);
    /// Writes at `offset` (a file opened for appending: at its end); a gap before it is filled with zeros.
    /// `written` falls short of the data when the space ends; with room for nothing the result is NoSpace.
    Errnum Write(int32_t descriptor, uint32_t offset, const Bytes& data, uint32_t& written);

    // --- Names -----------------------------------------------------------------------------------------

    Errnum MakeFolder(const std::string& path, uint32_t permissions);
    /// Removes an empty folder.
    Errnum RemoveFolder(const std::string& path);
    /// Removes a file or a link, never a folder (IsFolder).
    Errnum Unlink(const std::string& path);
    /// Renames as POSIX does: a file or link replaces a file or link, a folder an empty folder.
    Errnum Rename(const std::string& oldPath, const std::string& newPath);
    /// Makes a link at `path`; the target need not exist.
    Errnum MakeLink(const std::string& path, const std::string& target);
    Errnum ReadLink(const std::string& path, std::string& target) const;
    Errnum Stat(const std::string& path, Status& status) const;
    Errnum Access(const std::string& path) const;
    /// Sets the lowest 12 bits of the mode.
    Errnum ChangeMode(const std::string& path, uint32_t permissions);
    Errnum Attributes(const std::string& path, uint32_t& first, uint32_t& second, uint32_t& third) const;
    Errnum SetAttributes(const std::string& path, uint32_t first, uint32_t second);

    // --- Folders ---------------------------------------------------------------------------------------

    /// Opens a folder and remembers its entries of this moment. Handles are 1, 2, 3 ...; 0 on failure.
    Errnum OpenFolder(const std::string& path, uint32_t& handle);
    /// Entry number 1, 2, 3 ...; behind the last one an entry with an empty name.
    Errnum ReadFolder(uint32_t handle, uint32_t number, FolderEntry& entry) const;
    Errnum CloseFolder(uint32_t handle);

    // --- Space and limits ------------------------------------------------------------------------------

    SpaceStatus GetSpace() const;
    /// Sets the total so that `blocks` are free now.
    void SetFreeBlocks(uint32_t blocks);
    /// Block size in bytes, at least 1; only while the file system holds nothing.
    void SetBlockSize(uint32_t bytes);
    /// How many files, and how many folders, may be open at a time; 64 at first.
    void SetOpenLimit(size_t limit) { m_openLimit = limit; }
    size_t OpenFileCount() const { return m_files.size(); }
    size_t OpenFolderCount() const { return m_folders.size(); }
    /// Closes all descriptors and folders, as a restarted phone has.
    void CloseAll();

    // --- For tests and for filling ---------------------------------------------------------------------

    /// Makes a file, with the folders above it; replaces what a file of that name holds.
    Errnum AddFile(const std::string& path, const Bytes& content, uint32_t permissions = 0666,
                   std::optional<Times> times = {});
    Errnum AddFile(const std::string& path, const std::string& content);
    /// Makes a folder and those above it; one that exists is taken as it is.
    Errnum AddFolder(const std::string& path, uint32_t permissions = 0777);
    /// Makes a link, with the folders above it.
    Errnum AddLink(const std::string& path, const std::string& target);
    Errnum SetTimes(const std::string& path, const Times& times);
    /// True when there is such a file or folder (links are followed).
    bool Exists(const std::string& path) const { return Access(path) == Errnum::None; }
    /// The content of a file (links are followed); nothing when there is none.
    std::optional<Bytes> Content(const std::string& path) const;
    /// Everything below `path`, each folder before what it holds, in the order in which it was made.
    std::vector<Listed> List(const std::string& path = "") const;
    /// Removes everything and closes all.
    void Clear();

private:
    struct Place;
    struct OpenFile {
        NodePtr node;
        uint32_t flags = 0;
    };

    Place Find(const std::string& path, bool followLast) const;
    /// The existing node of a path, all links followed.
    Errnum FindNode(const std::string& path, NodePtr& node) const;
    /// Puts a new node of one block at a path that must be free.
    Errnum Make(const std::string& path, Kind kind, uint32_t permissions, NodePtr& made);
    Errnum CreateOrCheck(const Place& place, uint32_t flags, uint32_t permissions, NodePtr& node);
    uint32_t BlocksFor(uint64_t bytes) const;

    Space m_space;
    NodePtr m_root;
    std::map<int32_t, OpenFile> m_files;
    std::map<uint32_t, std::vector<FolderEntry>> m_folders;
    int32_t m_nextDescriptor = 0;
    uint32_t m_nextHandle = 1;
    size_t m_openLimit = 64;
};

} // namespace handset
