#include "wfxhost/copy.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "wfxhost/commands.h"
#include "wfxhost/failure.h"
#include "wfxhost/interrupt.h"
#include "wfxhost/progress.h"
#include "wfxhost/system.h"

namespace wfxhost {
namespace {

namespace fs = std::filesystem;

uint64_t LocalSize(const std::string& file) {
    std::error_code error;
    const uint64_t size = fs::file_size(file, error);
    return error ? 0 : size;
}

/// Runs `copy`, which takes the progress function, with the progress shown. `sizeAtEnd` tells how many bytes
/// a successful copy has moved.
template <class Copy, class SizeAtEnd>
int Shown(uint64_t size, Copy copy, SizeAtEnd sizeAtEnd) {
    const InterruptGuard guard;
    Progress progress(size, TerminalWidth());
    const int result = copy([&progress](int percent) {
        progress.Report(percent);
        return Interrupted();
    });
    progress.Finish(result == FS_FILE_OK, result == FS_FILE_OK ? sizeAtEnd() : 0);
    return result;
}

/// CommonReason gives the reason of a failure that means the same in both directions; empty for others.
std::string CommonReason(Session& session, int result, const std::string& target) {
    if (result == FS_FILE_EXISTS || result == FS_FILE_EXISTSRESUMEALLOWED)
        return Quoted(target) + " exists already; --force replaces it";
    if (result == FS_FILE_USERABORT)
        return "interrupted: " + Quoted(target) + " was not copied";
    if (result == FS_FILE_NOTSUPPORTED)
        return "this plug-in cannot copy that file";
    return session.Answers() ? "" : "the copy failed: the handset stopped answering";
}

/// Whether a local file can be written, tried without changing one that exists.
bool CanWrite(const std::string& file) {
    std::error_code error;
    const bool existed = fs::exists(file, error);
    const bool can = std::ofstream(file, std::ios::binary | std::ios::app).good();
    if (can && !existed)
        fs::remove(file, error);
    return can;
}

bool DiskIsFull(const std::string& file) {
    constexpr uintmax_t kAsGoodAsNothing = 4096;
    std::error_code error;
    const fs::space_info space = fs::space(fs::absolute(file, error).parent_path(), error);
    return !error && space.available < kAsGoodAsNothing;
}

std::string GetFailureReason(Session& session, int result, const PhonePath& path,
                             const std::string& localFile) {
    if (std::string reason = CommonReason(session, result, localFile); !reason.empty())
        return reason;
    if (result == FS_FILE_NOTFOUND)
        return "the phone has no file " + Quoted(path.Text());
    if (DiskIsFull(localFile))
        return "the disk is full";
    if (!CanWrite(localFile))
        return "cannot write " + Quoted(localFile);
    return "the phone did not hand out the whole file " + Quoted(path.Text());
}

std::string PutFailureReason(Session& session, int result, const std::string& localFile,
                             const PhonePath& path) {
    if (std::string reason = CommonReason(session, result, path.Text()); !reason.empty())
        return reason;
    if (result == FS_FILE_READERROR || !std::ifstream(localFile, std::ios::binary))
        return "cannot read " + Quoted(localFile);
    return "the phone did not take the file as " + Quoted(path.Text()) +
           "; perhaps it has no room for it, or does not allow it there";
}

} // namespace

void CopyFromPhone(Session& session, const PhonePath& path, const Entry& entry, const std::string& localFile,
                   bool force) {
    const int flags = force ? FS_COPYFLAGS_OVERWRITE : 0;
    const auto copy = [&](const ProgressFunction& progress) {
        return session.Get(path, entry, localFile, flags, progress);
    };
    const int result = Shown(entry.size, copy, [&] { return LocalSize(localFile); });
    if (result == FS_FILE_OK) {
        // A link's own size may differ from that of the file it leads to, so this is no failure.
        if (const uint64_t size = LocalSize(localFile); size != entry.size)
            std::fprintf(stderr, "note: the phone lists this file with %llu bytes\n",
                         static_cast<unsigned long long>(entry.size));
        return;
    }
    std::string reason = GetFailureReason(session, result, path, localFile);
    const bool began = result != FS_FILE_EXISTS && result != FS_FILE_EXISTSRESUMEALLOWED;
    std::error_code error;
    if (began && fs::exists(localFile, error))
        reason += "; " + Quoted(localFile) + " may be incomplete";
    throw Failure(reason);
}

void CopyToPhone(Session& session, const std::string& localFile, const PhonePath& path, bool force) {
    const int flags = force ? FS_COPYFLAGS_OVERWRITE : 0;
    const uint64_t size = LocalSize(localFile);
    const auto copy = [&](const ProgressFunction& progress) {
        return session.Put(localFile, path, flags, progress);
    };
    const int result = Shown(size, copy, [size] { return size; });
    if (result != FS_FILE_OK)
        throw Failure(PutFailureReason(session, result, localFile, path));
}

} // namespace wfxhost
