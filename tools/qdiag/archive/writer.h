// A tar archive that is written.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "qdiag/archive/entry.h"

struct archive;

namespace tools::qdiag {

/// ArchiveWriter writes an archive in the pax form of tar. The end of its name decides about compression:
/// ".gz" and ".tgz" gzip, ".zst" and ".tzst" zstd. The file has a temporary name until Finish renames it;
/// without Finish, the destructor removes it. A file with the wanted name is therefore complete. All
/// operations throw Failure when the file cannot be written.
class ArchiveWriter {
public:
    /// `identity`: the phone's, see Identity::Stored. What is at `path` is replaced at the end.
    ArchiveWriter(const std::string& path, const std::string& identity);
    ~ArchiveWriter();
    ArchiveWriter(const ArchiveWriter&) = delete;
    ArchiveWriter& operator=(const ArchiveWriter&) = delete;

    /// Begins an entry. Of a file, exactly `size` bytes follow.
    void Begin(const ArchiveEntry& entry);
    void Append(std::span<const unsigned char> content);
    /// Renames the file when all of it is on the disk.
    void Finish();

private:
    struct Freeing {
        void operator()(archive* a) const;
    };
    void Require(bool isDone);
    void OpenArchive();
    void ClosePart();

    const std::string m_path;
    const std::string m_partPath;
    std::string m_identity; // empty once it is written
    int m_file = -1;
    std::unique_ptr<archive, Freeing> m_archive;
};

} // namespace tools::qdiag
