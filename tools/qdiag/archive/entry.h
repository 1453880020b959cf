// An entry of a tar archive.
#pragma once

#include <cstdint>
#include <string>

#include "qdiag/efs/phone_files.h"

namespace tools::qdiag {

/// Names in an archive have no '/' before them: "nvm/num/71". Times are seconds since 1970, UTC.
struct ArchiveEntry {
    std::string name;
    Kind kind = Kind::File; // Special: what a phone does not have, see `kindText`
    const char* kindText = "";
    uint32_t mode = 0; // permissions
    uint64_t size = 0; // of a file's content
    uint32_t accessed = 0;
    uint32_t modified = 0;
    uint32_t changed = 0;
    std::string target;   // of a link
    std::string checksum; // see Checksum; empty when the archive has none
};

/// Extended attributes, which other programs leave alone: of the first entry, the identity of the phone; of
/// every entry, its checksum.
constexpr const char* kIdentityAttribute = "user.quillet.phone";
constexpr const char* kChecksumAttribute = "user.quillet.checksum";

/// Makes libarchive pass names through as they are, which it otherwise takes for text in the user's encoding.
void UsePlainNames();

} // namespace tools::qdiag
