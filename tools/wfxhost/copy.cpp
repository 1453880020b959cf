#include "wfxhost/copy.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "common/interrupt.h"
#include "common/progress.h"
#include "common/text.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

uint64_t LocalSize(const std::string& file) {
    std::error_code error;
    const uint64_t size = fs::file_size(file, error);
    return error ? 0 : size;
}

bool LocalExists(const std::string& file) {
    std::error_code error;
    return fs::exists(file, error);
}

/// Whether a local file can be written, tried without changing one that exists.
bool CanWrite(const std::string& file) {
    const bool existed = LocalExists(file);
    const bool can = std::ofstream(file, std::ios::binary | std::ios::app).good();
    std::error_code error;
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

bool IsExisting(int result) {
    return result == FS_FILE_EXISTS || result == FS_FILE_EXISTSRESUMEALLOWED;
}

CopyResult Failed(const std::string& why) {
    CopyResult result;
    result.remark = why;
    return result;
}

CopyResult Hopeless(const std::string& why) {
    CopyResult result = Failed(why);
    result.isHopeless = true;
    return result;
}

CopyResult Done(uint64_t bytes) {
    CopyResult result;
    result.isDone = true;
    result.bytes = bytes;
    return result;
}

/// The failures that mean the same in both directions; nothing for others.
std::optional<CopyResult> CommonFailure(Session& session, int result, const std::string& target) {
    if (IsExisting(result))
        return Failed(Quoted(target) + " exists already; --force replaces it");
    if (result == FS_FILE_USERABORT)
        return Hopeless("interrupted: " + Quoted(target) + " was not copied");
    if (result == FS_FILE_NOTSUPPORTED)
        return Failed("this plug-in cannot copy that file");
    if (!session.Answers())
        return Hopeless("the copy failed: the handset stopped answering");
    return std::nullopt;
}

CopyResult GetFailure(Session& session, int result, const PhonePath& path, const std::string& localFile) {
    if (const auto common = CommonFailure(session, result, localFile))
        return *common;
    if (result == FS_FILE_NOTFOUND)
        return Failed("the phone has no file " + Quoted(path.Text()));
    if (DiskIsFull(localFile))
        return Hopeless("the disk is full");
    if (!CanWrite(localFile))
        return Failed("cannot write " + Quoted(localFile));
    return Failed("the phone did not hand out the whole file " + Quoted(path.Text()));
}

CopyResult PutFailure(Session& session, int result, const std::string& localFile, const PhonePath& path) {
    if (const auto common = CommonFailure(session, result, path.Text()))
        return *common;
    if (result == FS_FILE_READERROR || !std::ifstream(localFile, std::ios::binary))
        return Failed("cannot read " + Quoted(localFile));
    return Failed("the phone did not take the file as " + Quoted(path.Text()) +
                  "; perhaps it has no room for it, or does not allow it there");
}

ProgressFunction StoppedByInterrupt(const PercentFunction& report) {
    return [&report](int percent) {
        report(percent);
        return Interrupted();
    };
}

/// Removes what a failed copy left of a new file, or tells what has become of the file that stood there.
void CleanUp(CopyResult& failure, const std::string& localFile, bool existed) {
    std::error_code error;
    if (existed)
        failure.remark +=
            "; " + Quoted(localFile) + (LocalExists(localFile) ? " may be incomplete now" : " is gone");
    else
        fs::remove(localFile, error);
}

} // namespace

CopyResult TryGet(Session& session, const PhonePath& path, const Entry& entry, const std::string& localFile,
                  bool force, const PercentFunction& report) {
    if (!path.IsTellable())
        return Failed(UntellableReason(path));
    const bool existed = LocalExists(localFile);
    const int code =
        session.Get(path, entry, localFile, force ? FS_COPYFLAGS_OVERWRITE : 0, StoppedByInterrupt(report));
    if (code != FS_FILE_OK) {
        CopyResult failure = GetFailure(session, code, path, localFile);
        if (!IsExisting(code))
            CleanUp(failure, localFile, existed);
        return failure;
    }
    CopyResult result = Done(LocalSize(localFile));
    // A link's own size may differ from that of the file it leads to, so this is no failure.
    if (result.bytes != entry.size)
        result.remark = "the phone lists " + Quoted(path.Text()) + " with " + std::to_string(entry.size) +
                        " bytes, but handed out " + std::to_string(result.bytes);
    return result;
}

CopyResult TryPut(Session& session, const std::string& localFile, const PhonePath& path, bool force,
                  const PercentFunction& report) {
    if (!path.IsTellable())
        return Failed(UntellableReason(path));
    const uint64_t size = LocalSize(localFile);
    const int code =
        session.Put(localFile, path, force ? FS_COPYFLAGS_OVERWRITE : 0, StoppedByInterrupt(report));
    return code == FS_FILE_OK ? Done(size) : PutFailure(session, code, localFile, path);
}

namespace {

/// Runs `copy`, which takes the percentage function, with the progress of `size` bytes shown.
template <class Copy>
void Shown(uint64_t size, Copy copy) {
    const InterruptGuard guard;
    Progress progress;
    const CopyResult result = copy([&](int percent) { progress.ReportBytes(percent, size); });
    progress.EndLine();
    if (!result.isDone)
        throw Failure(result.remark);
    std::printf("%s\n", SpeedText(result.bytes, progress.Seconds()).c_str());
    if (!result.remark.empty())
        std::fprintf(stderr, "note: %s\n", result.remark.c_str());
}

} // namespace

void CopyFromPhone(Session& session, const PhonePath& path, const Entry& entry, const std::string& localFile,
                   bool force) {
    Shown(entry.size, [&](const PercentFunction& report) {
        return TryGet(session, path, entry, localFile, force, report);
    });
}

void CopyToPhone(Session& session, const std::string& localFile, const PhonePath& path, bool force) {
    Shown(LocalSize(localFile),
          [&](const PercentFunction& report) { return TryPut(session, localFile, path, force, report); });
}

std::string SpeedText(uint64_t bytes, double seconds) {
    char time[32];
    std::snprintf(time, sizeof time, "%.2f", seconds);
    return std::to_string(bytes) + " bytes in " + time + " s (" +
           SizeText(static_cast<double>(bytes) / seconds) + "/s)";
}

} // namespace tools::wfxhost
