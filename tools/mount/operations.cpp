#include "mount/operations.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <type_traits>

#include "mount/works.h"

namespace tools::mount {
namespace {

constexpr unsigned kBlock = 512; // the unit of st_blocks
constexpr double kMoment_s = 1;

Mount& Mounted() {
    return *static_cast<Mount*>(fuse_get_context()->private_data);
}

Phone PhoneOf(Mount& mount) {
    return {*mount.session, *mount.folder, *mount.thread};
}

/// Converts exceptions of `work` to the results of libfuse.
template <class Work>
int Guarded(Work work) noexcept {
    try {
        return work();
    } catch (const PosixError& error) {
        return -error.number;
    } catch (const std::bad_alloc&) {
        return -ENOMEM;
    }
}

bool IsInterrupted() {
    return fuse_interrupted() != 0;
}

/// Runs a work of several steps on the phone's thread. The work outlives a caller that gives up.
template <class Work>
void Finish(const std::shared_ptr<Work>& work) {
    Mounted().thread->Run([work] { return work->Step(); }, IsInterrupted);
}

/// Runs a short piece of work on the phone's thread and returns its result. It must own all that it uses.
template <class Work>
auto OnPhone(Work work) {
    using Result = std::invoke_result_t<Work, PhoneFolder&>;
    PhoneFolder& folder = *Mounted().folder;
    if constexpr (std::is_void_v<Result>) {
        Mounted().thread->Run(
            [&folder, work] {
                work(folder);
                return true;
            },
            IsInterrupted);
    } else {
        const auto result = std::make_shared<Result>();
        Mounted().thread->Run(
            [&folder, work, result] {
                *result = work(folder);
                return true;
            },
            IsInterrupted);
        return std::move(*result);
    }
}

struct stat StatOf(const Attributes& attributes) {
    const Mount& mount = Mounted();
    struct stat status {};
    status.st_mode = attributes.mode;
    status.st_nlink = attributes.links;
    status.st_uid = mount.owner;
    status.st_gid = mount.group;
    status.st_size = attributes.size;
    status.st_blksize = 4096;
    status.st_blocks = (attributes.size + kBlock - 1) / kBlock;
    status.st_atime = attributes.accessed;
    status.st_mtime = attributes.modified;
    status.st_ctime = attributes.changed;
    return status;
}

// --- Names ---------------------------------------------------------------------------------------------

int GetAttributes(const char* path, struct stat* status, fuse_file_info*) {
    return Guarded([=] {
        *status = StatOf(OnPhone([p = std::string(path)](PhoneFolder& folder) { return folder.Look(p); }));
        return 0;
    });
}

int ReadLink(const char* path, char* target, size_t size) {
    return Guarded([=] {
        const std::string found =
            OnPhone([p = std::string(path)](PhoneFolder& folder) { return folder.LinkTarget(p); });
        const size_t length = std::min(found.size(), size - 1);
        std::memcpy(target, found.data(), length);
        target[length] = 0;
        return 0;
    });
}

int MakeFolder(const char* path, mode_t mode) {
    return Guarded([=] {
        OnPhone([p = std::string(path), mode](PhoneFolder& folder) { folder.MakeFolder(p, mode & 07777); });
        return 0;
    });
}

int RemoveFolder(const char* path) {
    return Guarded([=] {
        OnPhone([p = std::string(path)](PhoneFolder& folder) { folder.RemoveFolder(p); });
        return 0;
    });
}

int RemoveFile(const char* path) {
    return Guarded([=] {
        OnPhone([p = std::string(path)](PhoneFolder& folder) { folder.RemoveFile(p); });
        return 0;
    });
}

int MakeLink(const char* target, const char* path) {
    return Guarded([=] {
        OnPhone(
            [t = std::string(target), p = std::string(path)](PhoneFolder& folder) { folder.MakeLink(p, t); });
        return 0;
    });
}

int Rename(const char* from, const char* to, unsigned flags) {
    if ((flags & ~RENAME_NOREPLACE) != 0)
        return -EINVAL;
    return Guarded([=] {
        OnPhone([f = std::string(from), t = std::string(to), flags](PhoneFolder& folder) {
            folder.Rename(f, t, (flags & RENAME_NOREPLACE) == 0);
        });
        return 0;
    });
}

int ChangeMode(const char* path, mode_t mode, fuse_file_info*) {
    return Guarded([=] {
        OnPhone([p = std::string(path), mode](PhoneFolder& folder) { folder.ChangeMode(p, mode & 07777); });
        return 0;
    });
}

/// The phone has no owners: all entries have the owner of the mount.
int ChangeOwner(const char*, uid_t owner, gid_t group, fuse_file_info*) {
    const Mount& mount = Mounted();
    const bool isSame = (owner == static_cast<uid_t>(-1) || owner == mount.owner) &&
                        (group == static_cast<gid_t>(-1) || group == mount.group);
    return isSame ? 0 : -EPERM;
}

bool IsTime(const timespec& wanted, uint32_t now) {
    return wanted.tv_nsec == UTIME_OMIT ||
           (wanted.tv_nsec != UTIME_NOW && wanted.tv_sec == static_cast<time_t>(now));
}

bool IsNow(const timespec& wanted) {
    return wanted.tv_nsec == UTIME_NOW;
}

/// The phone sets times itself, so only the present time and the times that an entry already has are
/// possible.
int ChangeTimes(const char* path, const timespec times[2], fuse_file_info*) {
    return Guarded([=] {
        if (IsNow(times[1]) && (IsNow(times[0]) || times[0].tv_nsec == UTIME_OMIT)) {
            OnPhone([p = std::string(path)](PhoneFolder& folder) { folder.Touch(p); });
            return 0;
        }
        const Attributes now =
            OnPhone([p = std::string(path)](PhoneFolder& folder) { return folder.Look(p); });
        return IsTime(times[0], now.accessed) && IsTime(times[1], now.modified) ? 0 : -EPERM;
    });
}

int HardLink(const char*, const char*) {
    return -EPERM;
}

int GetSpace(const char*, struct statvfs* status) {
    return Guarded([=] {
        const Space space = OnPhone([](PhoneFolder& folder) { return folder.GetSpace(); });
        *status = {};
        status->f_bsize = status->f_frsize = space.blockSize;
        status->f_blocks = space.totalBlocks;
        status->f_bfree = space.freeBlocks;
        status->f_bavail = space.availableBlocks;
        status->f_files = space.mostFiles;
        status->f_ffree = status->f_favail = space.mostFiles - std::min(space.files, space.mostFiles);
        status->f_namemax = kLongestName;
        return 0;
    });
}

// --- Files ---------------------------------------------------------------------------------------------

/// The phone's flags have the same values as the system's.
DWORD PhoneFlags(int flags) {
    return static_cast<DWORD>(flags & (O_ACCMODE | O_CREAT | O_EXCL | O_TRUNC));
}
static_assert(O_CREAT == 0x40 && O_EXCL == 0x80 && O_TRUNC == 0x200);

OpenFilePtr& FileOf(const fuse_file_info* info) {
    return *reinterpret_cast<OpenFilePtr*>(info->fh);
}

struct Opened {
    OpenFilePtr file;
    bool isUnchanged = false;
};

/// Opens a file for a program. If the program gives up meanwhile, nobody will release the file, so it is
/// released here.
template <class Opening>
int OpenWith(fuse_file_info* info, Opening opening) {
    return Guarded([&] {
        PhoneFolder& folder = *Mounted().folder;
        PhoneThread& thread = *Mounted().thread;
        const auto opened = std::make_shared<Opened>();
        try {
            thread.Run(
                [&folder, opening, opened] {
                    *opened = opening(folder);
                    return true;
                },
                IsInterrupted);
        } catch (const PosixError&) {
            thread.Post([&folder, opened] {
                if (opened->file)
                    folder.Files().Release(*opened->file);
                return true;
            });
            throw;
        }
        info->fh = reinterpret_cast<uint64_t>(new OpenFilePtr(opened->file));
        info->keep_cache = opened->isUnchanged;
        return 0;
    });
}

int Open(const char* path, fuse_file_info* info) {
    return OpenWith(info, [p = std::string(path), flags = PhoneFlags(info->flags)](PhoneFolder& folder) {
        Opened opened;
        opened.file = folder.Open(p, flags, opened.isUnchanged);
        return opened;
    });
}

int Create(const char* path, mode_t mode, fuse_file_info* info) {
    return OpenWith(info,
                    [p = std::string(path), mode, flags = PhoneFlags(info->flags)](PhoneFolder& folder) {
                        return Opened{folder.Create(p, flags | O_CREAT, mode & 07777), false};
                    });
}

/// The phone has no devices and the like.
int MakeNode(const char* path, mode_t mode, dev_t) {
    if (!S_ISREG(mode))
        return -EPERM;
    return Guarded([=] {
        OnPhone([p = std::string(path), mode](PhoneFolder& folder) {
            const OpenFilePtr file = folder.Create(p, O_WRONLY | O_CREAT | O_EXCL, mode & 07777);
            folder.Files().Release(*file);
        });
        return 0;
    });
}

int Read(const char*, char* data, size_t size, off_t offset, fuse_file_info* info) {
    return Guarded([=] {
        const auto work =
            std::make_shared<ReadWork>(PhoneOf(Mounted()), FileOf(info), static_cast<uint64_t>(offset), size);
        Finish(work);
        std::memcpy(data, work->Data().data(), work->Data().size());
        return static_cast<int>(work->Data().size());
    });
}

int Write(const char*, const char* data, size_t size, off_t offset, fuse_file_info* info) {
    return Guarded([=] {
        const auto work =
            std::make_shared<WriteWork>(PhoneOf(Mounted()), FileOf(info), static_cast<uint64_t>(offset),
                                        std::span(reinterpret_cast<const unsigned char*>(data), size));
        Finish(work);
        return static_cast<int>(work->Done());
    });
}

int Resize(const char* path, off_t length, fuse_file_info*) {
    return Guarded([=] {
        Finish(std::make_shared<ResizeWork>(PhoneOf(Mounted()), path, static_cast<uint64_t>(length)));
        return 0;
    });
}

int Settle(const char*, fuse_file_info* info) {
    return Guarded([=] {
        OnPhone([file = FileOf(info)](PhoneFolder& folder) { folder.Files().Settle(*file); });
        return 0;
    });
}

int Sync(const char* path, int, fuse_file_info* info) {
    return Settle(path, info);
}

int Release(const char*, fuse_file_info* info) {
    const std::unique_ptr<OpenFilePtr> file(&FileOf(info));
    PhoneFolder& folder = *Mounted().folder;
    Mounted().thread->Post([&folder, file = *file] {
        folder.Files().Release(*file);
        return true;
    });
    return 0;
}

// --- Folders -------------------------------------------------------------------------------------------

struct OpenFolder {
    std::shared_ptr<const Listing> listing;
};

int OpenDirectory(const char*, fuse_file_info* info) {
    info->fh = reinterpret_cast<uint64_t>(new OpenFolder);
    return 0;
}

int ReadDirectory(const char* path, void* buffer, fuse_fill_dir_t fill, off_t offset, fuse_file_info* info,
                  fuse_readdir_flags flags) {
    return Guarded([=] {
        auto& folder = *reinterpret_cast<OpenFolder*>(info->fh);
        if (offset == 0 || !folder.listing) {
            const auto work = std::make_shared<ListWork>(PhoneOf(Mounted()), path);
            Finish(work);
            folder.listing = work->Result();
        }
        const auto& entries = folder.listing->entries;
        const bool isFresh = Clock::now() <= folder.listing->validUntil;
        // Offsets: 1 and 2 are after "." and "..", then there is one after each entry.
        for (auto i = static_cast<size_t>(offset); i < entries.size() + 2; ++i) {
            const auto next = static_cast<off_t>(i + 1);
            if (i < 2) {
                if (fill(buffer, i == 0 ? "." : "..", nullptr, next, fuse_fill_dir_flags{}) != 0)
                    break;
                continue;
            }
            const Entry& entry = entries[i - 2];
            const struct stat status = StatOf(entry.attributes);
            const bool isWhole = (flags & FUSE_READDIR_PLUS) != 0 && isFresh && entry.isSound;
            if (fill(buffer, entry.name.c_str(), entry.isSound ? &status : nullptr, next,
                     isWhole ? FUSE_FILL_DIR_PLUS : fuse_fill_dir_flags{}) != 0)
                break;
        }
        return 0;
    });
}

int ReleaseDirectory(const char*, fuse_file_info* info) {
    delete reinterpret_cast<OpenFolder*>(info->fh);
    return 0;
}

/// Nothing to do: an operation that changes a name returns after the phone has done so.
int SyncDirectory(const char*, int, fuse_file_info*) {
    return 0;
}

// --- The whole -----------------------------------------------------------------------------------------

void* Begin(fuse_conn_info* connection, fuse_config* settings) {
    Mount& mount = Mounted();
    mount.owner = settings->set_uid ? settings->uid : getuid();
    mount.group = settings->set_gid ? settings->gid : getgid();
    settings->entry_timeout = kMoment_s;
    settings->attr_timeout = kMoment_s;
    settings->negative_timeout = 0;
    connection->time_gran = 1000000000;
    mount.session = std::make_unique<PhoneSession>(mount.wantedPort, mount.port);
    mount.folder = std::make_unique<PhoneFolder>(*mount.session, mount.mountPoint);
    mount.thread = std::make_unique<PhoneThread>(mount.idle, [&mount] { mount.folder->Idle(); });
    return &mount;
}

} // namespace

void Mount::End() {
    if (!thread)
        return;
    thread->Post([this] {
        folder->End();
        return true;
    });
    thread.reset();
}

const fuse_operations& Operations() {
    static const fuse_operations operations = [] {
        fuse_operations table{};
        table.getattr = GetAttributes;
        table.readlink = ReadLink;
        table.mknod = MakeNode;
        table.mkdir = MakeFolder;
        table.unlink = RemoveFile;
        table.rmdir = RemoveFolder;
        table.symlink = MakeLink;
        table.rename = Rename;
        table.link = HardLink;
        table.chmod = ChangeMode;
        table.chown = ChangeOwner;
        table.truncate = Resize;
        table.open = Open;
        table.create = Create;
        table.read = Read;
        table.write = Write;
        table.statfs = GetSpace;
        table.flush = Settle;
        table.fsync = Sync;
        table.release = Release;
        table.opendir = OpenDirectory;
        table.readdir = ReadDirectory;
        table.releasedir = ReleaseDirectory;
        table.fsyncdir = SyncDirectory;
        table.utimens = ChangeTimes;
        table.init = Begin;
        return table;
    }();
    return operations;
}

} // namespace tools::mount
