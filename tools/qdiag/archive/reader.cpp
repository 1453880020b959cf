#include "qdiag/archive/reader.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "common/failure.h"
#include "common/interrupt.h"
#include "common/text.h"

namespace tools::qdiag {
namespace {

constexpr size_t kBlockSize = 65536;

Kind KindOf(archive_entry* header, const char*& text) {
    if (archive_entry_hardlink(header) != nullptr) {
        text = "a hard link";
        return Kind::Special;
    }
    switch (archive_entry_filetype(header)) {
        case AE_IFREG:
            return Kind::File;
        case AE_IFDIR:
            return Kind::Folder;
        case AE_IFLNK:
            return Kind::Link;
        case AE_IFIFO:
            text = "a pipe";
            return Kind::Special;
        case AE_IFSOCK:
            text = "a socket";
            return Kind::Special;
        default:
            text = "a device";
            return Kind::Special;
    }
}

std::string TextOf(const char* text) {
    return text == nullptr ? "" : text;
}

/// Returns an extended attribute; empty when there is none.
std::string AttributeOf(archive_entry* header, const char* wanted) {
    archive_entry_xattr_reset(header);
    const char* name = nullptr;
    const void* value = nullptr;
    size_t size = 0;
    while (archive_entry_xattr_next(header, &name, &value, &size) == ARCHIVE_OK)
        if (name != nullptr && std::string_view(name) == wanted)
            return {static_cast<const char*>(value), size};
    return "";
}

} // namespace

void ArchiveReader::Freeing::operator()(archive* a) const {
    archive_read_free(a);
}

ArchiveReader::ArchiveReader(const std::string& path, const std::string& aftermath)
    : m_path(path), m_aftermath(aftermath), m_archive(archive_read_new()) {
    archive* const a = m_archive.get();
    struct stat status {};
    m_file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); // a pipe would wait for its writer
    if (m_file < 0 || a == nullptr || fstat(m_file, &status) != 0)
        throw Failure("the file " + Quoted(path) + " cannot be read: " + std::strerror(errno));
    if (!S_ISREG(status.st_mode)) {
        close(m_file);
        throw Failure(Quoted(path) + " is not a regular file");
    }
    archive_read_support_filter_gzip(a);
    archive_read_support_filter_zstd(a);
    archive_read_support_format_tar(a);
    if (archive_read_open_fd(a, m_file, kBlockSize) != ARCHIVE_OK) {
        close(m_file);
        ThrowDamaged(TextOf(archive_error_string(a)));
    }
}

ArchiveReader::~ArchiveReader() {
    m_archive.reset();
    close(m_file);
}

void ArchiveReader::ThrowDamaged(const std::string& reason) const {
    throw Failure("the archive " + Quoted(m_path) + " is damaged or is no archive (" + Printable(reason) +
                  "): " + m_aftermath);
}

/// An archive that was cut off between two entries lacks the two empty blocks that mark its end. A compressed
/// one that was cut off cannot be uncompressed.
void ArchiveReader::RequireEndMark() const {
    std::array<char, 1024> end;
    struct stat status {};
    if (archive_filter_code(m_archive.get(), 0) != ARCHIVE_FILTER_NONE)
        return;
    const bool isRead =
        fstat(m_file, &status) == 0 &&
        pread(m_file, end.data(), end.size(), status.st_size - static_cast<off_t>(end.size())) ==
            static_cast<ssize_t>(end.size());
    if (!isRead || std::ranges::any_of(end, [](char c) { return c != 0; }))
        ThrowDamaged("its end is missing");
}

bool ArchiveReader::Next(ArchiveEntry& entry) {
    if (Interrupted())
        throw Failure("interrupted: " + m_aftermath);
    archive_entry* header = nullptr;
    const int result = archive_read_next_header(m_archive.get(), &header);
    if (result == ARCHIVE_EOF) {
        RequireEndMark();
        return false;
    }
    // A warning is about an attribute that the phone does not have, or about a name that is not UTF-8.
    if (result != ARCHIVE_OK && result != ARCHIVE_WARN)
        ThrowDamaged(TextOf(archive_error_string(m_archive.get())));
    entry = {};
    entry.name = TextOf(archive_entry_pathname(header));
    entry.kind = KindOf(header, entry.kindText);
    entry.mode = static_cast<uint32_t>(archive_entry_perm(header));
    entry.size = static_cast<uint64_t>(std::max<la_int64_t>(archive_entry_size(header), 0));
    entry.target = TextOf(archive_entry_symlink(header));
    entry.checksum = AttributeOf(header, kChecksumAttribute);
    if (!m_isBegun)
        m_identity = AttributeOf(header, kIdentityAttribute);
    m_isBegun = true;
    return true;
}

size_t ArchiveReader::Read(std::span<unsigned char> area) {
    if (Interrupted())
        throw Failure("interrupted: " + m_aftermath);
    const la_ssize_t count = archive_read_data(m_archive.get(), area.data(), area.size());
    if (count < 0)
        ThrowDamaged(TextOf(archive_error_string(m_archive.get())));
    return static_cast<size_t>(count);
}

} // namespace tools::qdiag
