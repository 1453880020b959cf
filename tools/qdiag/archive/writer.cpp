#include "qdiag/archive/writer.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "common/failure.h"
#include "common/text.h"

namespace tools::qdiag {
namespace {

struct EntryFreeing {
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

int AddFilter(archive* a, const std::string& path) {
    if (path.ends_with(".gz") || path.ends_with(".tgz"))
        return archive_write_add_filter_gzip(a);
    if (path.ends_with(".zst") || path.ends_with(".tzst"))
        return archive_write_add_filter_zstd(a);
    return ARCHIVE_OK;
}

mode_t TypeOf(Kind kind) {
    return kind == Kind::Folder ? AE_IFDIR : kind == Kind::Link ? AE_IFLNK : AE_IFREG;
}

void AddAttribute(archive_entry* header, const char* name, const std::string& value) {
    if (!value.empty())
        archive_entry_xattr_add_entry(header, name, value.data(), value.size());
}

void SyncFolderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

} // namespace

void ArchiveWriter::Freeing::operator()(archive* a) const {
    archive_write_free(a);
}

ArchiveWriter::ArchiveWriter(const std::string& path, const std::string& identity)
    : m_path(path), m_partPath(path + ".part"), m_identity(identity) {
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is an error like a full disk
    m_file = open(m_partPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (m_file < 0 && errno == EEXIST)
        throw Failure(Quoted(m_partPath) + " already exists; the backup is written there first");
    if (m_file < 0)
        throw Failure("the file " + Quoted(m_partPath) + " cannot be created: " + std::strerror(errno));
    try {
        OpenArchive();
    } catch (const Failure&) {
        ClosePart();
        throw;
    }
}

void ArchiveWriter::OpenArchive() {
    m_archive.reset(archive_write_new());
    archive* const a = m_archive.get();
    Require(a != nullptr && archive_write_set_format_pax(a) == ARCHIVE_OK &&
            AddFilter(a, m_path) >= ARCHIVE_WARN &&
            archive_write_set_format_option(a, "pax", "xattrheader", "SCHILY") >= ARCHIVE_WARN &&
            archive_write_open_fd(a, m_file) == ARCHIVE_OK);
}

ArchiveWriter::~ArchiveWriter() {
    ClosePart();
}

/// Removes the file, unless it is finished.
void ArchiveWriter::ClosePart() {
    if (m_archive != nullptr)
        archive_write_fail(m_archive.get()); // or it would write the archive's end
    m_archive.reset();
    if (m_file < 0)
        return;
    close(m_file);
    m_file = -1;
    unlink(m_partPath.c_str());
}

void ArchiveWriter::Require(bool isDone) {
    if (isDone)
        return;
    const char* const reason = m_archive == nullptr ? nullptr : archive_error_string(m_archive.get());
    throw Failure("the file " + Quoted(m_partPath) + " could not be written" +
                  (reason == nullptr ? "" : ": " + Printable(reason)));
}

void ArchiveWriter::Begin(const ArchiveEntry& entry) {
    const std::unique_ptr<archive_entry, EntryFreeing> header(archive_entry_new2(m_archive.get()));
    archive_entry_copy_pathname(header.get(), entry.name.c_str());
    archive_entry_set_filetype(header.get(), TypeOf(entry.kind));
    archive_entry_set_perm(header.get(), entry.mode);
    archive_entry_set_size(header.get(), static_cast<la_int64_t>(entry.size));
    archive_entry_set_atime(header.get(), entry.accessed, 0);
    archive_entry_set_mtime(header.get(), entry.modified, 0);
    archive_entry_set_ctime(header.get(), entry.changed, 0);
    if (entry.kind == Kind::Link)
        archive_entry_copy_symlink(header.get(), entry.target.c_str());
    AddAttribute(header.get(), kChecksumAttribute, entry.checksum);
    AddAttribute(header.get(), kIdentityAttribute, m_identity);
    m_identity.clear();
    // A warning says that the name is not UTF-8; it is then kept byte by byte.
    Require(archive_write_header(m_archive.get(), header.get()) >= ARCHIVE_WARN);
}

void ArchiveWriter::Append(std::span<const unsigned char> content) {
    Require(archive_write_data(m_archive.get(), content.data(), content.size()) ==
            static_cast<la_ssize_t>(content.size()));
}

void ArchiveWriter::Finish() {
    Require(archive_write_close(m_archive.get()) == ARCHIVE_OK);
    m_archive.reset();
    const bool isWritten = fsync(m_file) == 0 && std::rename(m_partPath.c_str(), m_path.c_str()) == 0;
    if (!isWritten)
        throw Failure("the file " + Quoted(m_path) + " could not be written: " + std::strerror(errno));
    close(m_file);
    m_file = -1;
    SyncFolderOf(m_path);
}

} // namespace tools::qdiag
