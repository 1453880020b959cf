// A checksum of an archive's entries.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "qdiag/archive/entry.h"

namespace tools::qdiag {

/// Checksum is the CRC-32 of an entry's name, its link's target (both with a terminating zero) and its
/// content. Tar protects neither contents nor long names.
class Checksum {
public:
    explicit Checksum(const ArchiveEntry& entry);

    void Append(std::span<const unsigned char> content);
    /// Returns eight hex digits.
    std::string Text() const;

private:
    void AppendText(const std::string& text);

    uint32_t m_rest = 0xFFFFFFFF;
};

} // namespace tools::qdiag
