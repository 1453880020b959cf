#include <array>
#include <cerrno>
#include <cstdio>
#include <random>

#include "mount/works.h"

namespace tools::mount {
namespace {

constexpr DWORD kWriteOnly = 1;
constexpr DWORD kCreate = 0x40;
constexpr DWORD kExclusive = 0x80;
constexpr DWORD kTruncate = 0x200;

std::string FreshName() {
    char name[32];
    std::snprintf(name, sizeof name, ".quillet-%08x", std::random_device()());
    return name;
}

} // namespace

bool ResizeWork::Step() {
    if (!m_copy)
        return Begin();
    if (m_done < m_length) {
        CopyBlock();
        return false;
    }
    ReplaceOriginal();
    return true;
}

/// Returns true when the work is done.
bool ResizeWork::Begin() {
    RequireUsablePath(m_path);
    const Attributes now = Stat(m_phone.session, m_path);
    if (now.IsFolder())
        throw PosixError{EISDIR};
    if (m_length == now.size)
        return true;
    if (m_length == 0)
        Empty();
    else if (m_length > now.size)
        Extend();
    else
        BeginCopy(now.mode & 07777);
    return m_copy == nullptr;
}

void ResizeWork::Empty() {
    OpenFiles& files = m_phone.folder.Files();
    const OpenFilePtr file = files.Open(m_path, kWriteOnly | kTruncate, 0);
    file->isWritten = true;
    m_phone.folder.Changed(m_path);
    files.With(file, [&] { files.Settle(*file); });
}

/// Writes a byte at the new end; the bytes before it read as zeros. Then checks that the phone reports the
/// new size.
void ResizeWork::Extend() {
    OpenFiles& files = m_phone.folder.Files();
    const OpenFilePtr file = files.Open(m_path, kWriteOnly, 0);
    const unsigned char zero = 0;
    m_phone.folder.Changed(m_path);
    files.With(file, [&] {
        files.Write(*file, m_length - 1, std::span(&zero, 1));
        files.Settle(*file);
    });
    if (Stat(m_phone.session, m_path).size != m_length)
        throw PosixError{EIO};
}

void ResizeWork::BeginCopy(uint32_t permissions) {
    OpenFiles& files = m_phone.folder.Files();
    const std::string folder = FolderOf(m_path);
    const std::string path = (folder == "/" ? "" : folder) + "/" + FreshName();
    RequireUsablePath(path);
    m_original = files.Open(m_path, 0, 0);
    m_copy = m_phone.folder.Create(path, kWriteOnly | kCreate | kExclusive, permissions);
}

void ResizeWork::CopyBlock() {
    OpenFiles& files = m_phone.folder.Files();
    std::array<unsigned char, Diag_FTM::kEfs2MostRead> block;
    const auto wanted = std::min<uint64_t>(block.size(), m_length - m_done);
    const size_t read = files.Read(*m_original, m_done, std::span(block).first(wanted));
    if (read == 0)
        throw PosixError{EIO}; // the file has become shorter meanwhile
    for (size_t done = 0; done < read;)
        done += files.Write(*m_copy, m_done + done, std::span(block).first(read).subspan(done));
    m_done += read;
}

void ResizeWork::ReplaceOriginal() {
    OpenFiles& files = m_phone.folder.Files();
    files.Settle(*m_copy);
    const std::string copy = m_copy->path;
    files.Release(*m_copy);
    files.Detach(m_path);
    m_phone.folder.Rename(copy, m_path, true);
    m_copy.reset();
}

ResizeWork::~ResizeWork() {
    if (!m_original)
        return;
    m_phone.thread.Post([phone = m_phone, original = m_original, copy = m_copy] {
        phone.folder.Files().Release(*original);
        if (!copy)
            return true;
        phone.folder.Files().Release(*copy);
        phone.folder.RemoveFile(copy->path);
        return true;
    });
}

} // namespace tools::mount
