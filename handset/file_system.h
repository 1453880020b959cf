// The flash file system of the simulated handset: a tree of folders, files and symbolic links, open
// descriptors and open folders, with the error numbers that the handset reports.
//
// A FileSystem has no lock. The handset accesses its file system under its own lock; Handset::WithFiles
// lets others access it. Names in a path are separated by '/'. A leading '/' is optional, repeated ones
// count once, "." and ".." have their usual meaning, and the empty path is the root. A name has 1 to 255
// bytes, any except '/' and 0. Links may be relative or absolute. They are followed, except as the last
// name of an entry that is removed, renamed, made or read as a link.
//
// Only opening a file or folder checks permissions, and only the owner's. The change time changes with
// content, name and permissions.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "handset/node.h"

namespace handset {

/// The error numbers in the responses.
enum class Errnum : uint32_t {
    None = 0,
    NotFound = 2,      // ENOENT
    BadDescriptor = 9, // EBADF
    NoAccess = 13,     // EACCES
    Busy = 16,         // EBUSY: removing or renaming the root
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

/// What READDIR reports about one entry. At the end of the folder all values are 0 and the name is empty.
struct FolderEntry {
    Kind kind = Kind::File;
    uint32_t mode = 0;
    uint32_t size = 0;
    Times times;
    std::string name;
};

/// What STATFS reports. Available and free blocks are the same here.
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

    /// Opens a file. A new file gets `permissions`. Descriptors are 0, 1, 2 ... and are not reused; -1 on
    /// failure.
    Errnum Open(const std::string& path, uint32_t flags, uint32_t permissions, int32_t& descriptor);
    Errnum Close(int32_t descriptor);
    /// Reads up to `count` bytes at `offset`; fewer, or none, at the end of the file.
    Errnum Read(int32_t descriptor, uint32_t count, uint32_t offset, Bytes& data);
    /// Writes at `offset`, or at the end of a file opened for appending. Fills a gap before `offset` with
    /// zeros. `written` is less than the size of the data when space runs out; NoSpace when nothing fits.
    Errnum Write(int32_t descriptor, uint32_t offset, const Bytes& data, uint32_t& written);

    // --- Names -----------------------------------------------------------------------------------------

    Errnum MakeFolder(const std::string& path, uint32_t permissions);
    /// Removes an empty folder.
    Errnum RemoveFolder(const std::string& path);
    /// Removes a file or a link, never a folder (IsFolder).
    Errnum Unlink(const std::string& path);
    /// Renames like POSIX: a file or link replaces a file or link, a folder replaces an empty folder.
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

    /// Opens a folder with a snapshot of its entries. Handles are 1, 2, 3 ...; 0 on failure.
    Errnum OpenFolder(const std::string& path, uint32_t& handle);
    /// Returns entry number 1, 2, 3 ...; after the last one, an entry with an empty name.
    Errnum ReadFolder(uint32_t handle, uint32_t number, FolderEntry& entry) const;
    Errnum CloseFolder(uint32_t handle);

    // --- Space and limits ------------------------------------------------------------------------------

    SpaceStatus GetSpace() const;
    /// Sets the total number of blocks so that `blocks` are free now.
    void SetFreeBlocks(uint32_t blocks);
    /// Sets the block size in bytes, at least 1. No effect unless the file system is empty.
    void SetBlockSize(uint32_t bytes);
    /// Limits the number of open files, and likewise of open folders; initially 64.
    void SetOpenLimit(size_t limit) { m_openLimit = limit; }
    size_t OpenFileCount() const { return m_files.size(); }
    size_t OpenFolderCount() const { return m_folders.size(); }
    /// Closes all descriptors and folders, like a restart of the handset.
    void CloseAll();

    // --- For tests and for filling ---------------------------------------------------------------------

    /// Makes a file and its parent folders. Replaces the content of an existing file.
    Errnum AddFile(const std::string& path, const Bytes& content, uint32_t permissions = 0666,
                   std::optional<Times> times = {});
    Errnum AddFile(const std::string& path, const std::string& content);
    /// Makes a folder and its parent folders. Leaves an existing folder as it is.
    Errnum AddFolder(const std::string& path, uint32_t permissions = 0777);
    /// Makes a link and its parent folders.
    Errnum AddLink(const std::string& path, const std::string& target);
    Errnum SetTimes(const std::string& path, const Times& times);
    /// True when the file or folder exists (links are followed).
    bool Exists(const std::string& path) const { return Access(path) == Errnum::None; }
    /// The content of a file (links are followed); empty optional when there is no such file.
    std::optional<Bytes> Content(const std::string& path) const;
    /// All entries below `path`, each folder before its content, in order of creation.
    std::vector<Listed> List(const std::string& path = "") const;
    /// Removes all entries and closes everything.
    void Clear();

private:
    struct Place;
    struct OpenFile {
        NodePtr node;
        uint32_t flags = 0;
    };

    Place Find(const std::string& path, bool followLast) const;
    /// Finds the node of a path and follows all links.
    Errnum FindNode(const std::string& path, NodePtr& node) const;
    /// Makes a node of one block; Exists when the path is taken.
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
