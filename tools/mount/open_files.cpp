#include "mount/open_files.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tools::mount {
namespace {

constexpr DWORD kAccessMask = 3;
constexpr DWORD kExclusive = 0x80;
constexpr uint64_t kLargestFile = std::numeric_limits<DWORD>::max();

} // namespace

Attributes Stat(PhoneSession& session, const std::string& path) {
    Attributes found;
    session.Query([&](Diag_FTM& phone, DWORD& error) {
        // Preset, because a response without values changes none, which is not a success.
        error = EIO;
        DWORD mode = 0, size = 0, links = 0, accessed = 0, modified = 0, changed = 0;
        const bool isAnswered =
            phone.EFS2_DIAG_STAT(path.c_str(), error, mode, size, links, accessed, modified, changed);
        found = {mode, size, links, accessed, modified, changed};
        return isAnswered;
    });
    return found;
}

OpenFilePtr OpenFiles::Open(const std::string& path, DWORD flags, DWORD permissions) {
    auto file = std::make_shared<OpenFile>();
    file->path = path;
    file->access = flags & kAccessMask;
    const auto open = [&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_OPEN(path.c_str(), flags, permissions, file->descriptor, error);
    };
    if (flags & kExclusive)
        m_session.Order(open);
    else
        m_session.Query(open);
    file->epoch = m_session.Epoch();
    m_files.push_back(file);
    return file;
}

void OpenFiles::Reopen(OpenFile& file) {
    if (file.parked && !file.parked->IsSameVersion(Stat(m_session, file.path)))
        throw PosixError{ESTALE};
    m_session.Order([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_OPEN(file.path.c_str(), file.access, 0, file.descriptor, error);
    });
    file.parked.reset();
}

void OpenFiles::Ensure(OpenFile& file) {
    if (file.epoch != m_session.Epoch())
        throw PosixError{EIO};
    if (file.descriptor < 0)
        Reopen(file);
}

size_t OpenFiles::Read(OpenFile& file, uint64_t offset, std::span<unsigned char> area) {
    if (offset >= kLargestFile)
        return 0;
    Ensure(file);
    DWORD read = 0;
    const auto wanted = std::min<uint64_t>({area.size(), Diag_FTM::kEfs2MostRead, kLargestFile - offset});
    m_session.Order([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_READ(file.descriptor, static_cast<DWORD>(offset), area.data(),
                                    static_cast<DWORD>(wanted), read, error);
    });
    return read;
}

size_t OpenFiles::Write(OpenFile& file, uint64_t offset, std::span<const unsigned char> data) {
    if (offset >= kLargestFile)
        throw PosixError{EFBIG};
    Ensure(file);
    DWORD written = 0;
    const auto wanted = std::min<uint64_t>({data.size(), Diag_FTM::kEfs2MostWritten, kLargestFile - offset});
    file.isWritten = true;
    m_session.Order([&](Diag_FTM& phone, DWORD& error) {
        return phone.EFS2_DIAG_WRITE(file.descriptor, static_cast<DWORD>(offset), data.data(),
                                     static_cast<DWORD>(wanted), written, error);
    });
    file.reportedSize = std::max(file.reportedSize, offset + written);
    return written;
}

void OpenFiles::CloseOnPhone(OpenFile& file) {
    const LONG descriptor = std::exchange(file.descriptor, -1);
    if (descriptor < 0 || file.epoch != m_session.Epoch())
        return;
    m_session.Order([&](Diag_FTM& phone, DWORD& error) { return phone.EFS2_DIAG_CLOSE(descriptor, error); });
}

void OpenFiles::Settle(OpenFile& file) {
    if (!file.isWritten)
        return;
    if (file.epoch != m_session.Epoch())
        throw PosixError{EIO};
    file.isWritten = false;
    CloseOnPhone(file);
}

void OpenFiles::Quietly(void (OpenFiles::*work)(OpenFile&), OpenFile& file) {
    try {
        (this->*work)(file);
    } catch (const PosixError&) {
        // No caller waits for the failure; a later use of the file fails anyway.
    }
}

void OpenFiles::Release(OpenFile& file) {
    std::erase_if(m_files, [&](const OpenFilePtr& other) { return other.get() == &file; });
    Quietly(&OpenFiles::CloseOnPhone, file);
}

void OpenFiles::Detach(const std::string& path) {
    for (const OpenFilePtr& file : m_files)
        if (file->path == path)
            Quietly(&OpenFiles::CloseOnPhone, *file);
}

void OpenFiles::Renamed(const std::string& from, const std::string& to) {
    for (const OpenFilePtr& file : m_files)
        if (IsWithin(file->path, from))
            file->path = to + file->path.substr(from.size());
}

bool OpenFiles::IsOpen(const std::string& path) const {
    return std::ranges::any_of(m_files, [&](const OpenFilePtr& file) { return file->path == path; });
}

void OpenFiles::SizeReported(const std::string& path, uint64_t size) {
    for (const OpenFilePtr& file : m_files)
        if (file->path == path)
            file->reportedSize = size;
}

void OpenFiles::Park() {
    for (const OpenFilePtr& file : m_files) {
        if (file->descriptor < 0 || file->epoch != m_session.Epoch())
            continue;
        try {
            Settle(*file);
            CloseOnPhone(*file);
            file->parked = Stat(m_session, file->path);
        } catch (const PosixError&) {
            // Written data may be lost: the next use of the file fails, and so does its close.
            file->epoch = m_session.Epoch() - 1;
            file->isWritten = true;
        }
    }
}

void OpenFiles::CloseAll() {
    for (const OpenFilePtr& file : m_files)
        Quietly(&OpenFiles::CloseOnPhone, *file);
}

} // namespace tools::mount
