// A tar archive that is read.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "qdiag/archive/entry.h"

struct archive;
struct archive_entry;

namespace tools::qdiag {

/// ArchiveReader reads an archive once, from its beginning to its end: tar in any of its forms, plain or
/// compressed with gzip or zstd. All operations throw Failure when the archive cannot be read or is damaged,
/// and after Ctrl-C under an InterruptGuard.
class ArchiveReader {
public:
    /// `aftermath`: the end of the text of those failures.
    ArchiveReader(const std::string& path, const std::string& aftermath);
    ~ArchiveReader();
    ArchiveReader(const ArchiveReader&) = delete;
    ArchiveReader& operator=(const ArchiveReader&) = delete;

    /// Takes the next entry; false at the archive's end. What was not read of the entry before is skipped.
    bool Next(ArchiveEntry& entry);
    /// Reads the next bytes of the entry's content; 0 at its end. The area is filled unless the content ends.
    size_t Read(std::span<unsigned char> area);
    /// The identity that the first entry holds; empty when it holds none.
    const std::string& Identity() const { return m_identity; }

private:
    struct Freeing {
        void operator()(archive* a) const;
    };
    [[noreturn]] void ThrowDamaged(const std::string& reason) const;
    void RequireEndMark() const;

    const std::string m_path;
    const std::string m_aftermath;
    std::string m_identity;
    int m_file = -1;
    bool m_isBegun = false;
    std::unique_ptr<archive, Freeing> m_archive;
};

} // namespace tools::qdiag
