// The content of one file while it is copied.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace tools::qdiag {

/// Spool keeps a file's content on the disk, whatever its size, until it is known to be whole: an archive
/// says the size before the content. The disk's file has no name, so that nothing stays after a crash.
/// Operations throw Failure when the disk is full or fails.
class Spool {
public:
    /// `beside`: the file is made in the folder of this path.
    explicit Spool(const std::string& beside);
    ~Spool();
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;

    void Clear();
    void Append(std::span<const unsigned char> bytes);
    uint64_t Size() const { return m_size; }
    /// Passes the content on in pieces.
    void CopyTo(const std::function<void(std::span<const unsigned char>)>& take) const;

private:
    int m_file = -1;
    uint64_t m_size = 0;
};

} // namespace tools::qdiag
