#include "qdiag/archive/spool.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "common/failure.h"

namespace tools::qdiag {
namespace {

constexpr size_t kPiece = 65536;

[[noreturn]] void ThrowDiskFailure() {
    throw Failure(std::string("a temporary file cannot be used: ") + std::strerror(errno));
}

} // namespace

Spool::Spool(const std::string& beside) {
    std::string name = beside + ".XXXXXX";
    m_file = mkstemp(name.data());
    if (m_file < 0)
        ThrowDiskFailure();
    unlink(name.c_str());
}

Spool::~Spool() {
    close(m_file);
}

void Spool::Clear() {
    if (ftruncate(m_file, 0) != 0)
        ThrowDiskFailure();
    m_size = 0;
}

void Spool::Append(std::span<const unsigned char> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = pwrite(m_file, bytes.data(), bytes.size(), static_cast<off_t>(m_size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            ThrowDiskFailure();
        m_size += static_cast<uint64_t>(count);
        bytes = bytes.subspan(static_cast<size_t>(count));
    }
}

void Spool::CopyTo(const std::function<void(std::span<const unsigned char>)>& take) const {
    std::vector<unsigned char> piece(kPiece);
    for (uint64_t done = 0; done < m_size;) {
        const auto wanted = static_cast<size_t>(std::min<uint64_t>(piece.size(), m_size - done));
        const ssize_t count = pread(m_file, piece.data(), wanted, static_cast<off_t>(done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            ThrowDiskFailure();
        take(std::span(piece).first(static_cast<size_t>(count)));
        done += static_cast<uint64_t>(count);
    }
}

} // namespace tools::qdiag
