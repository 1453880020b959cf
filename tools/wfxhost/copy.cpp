#include "wfxhost/copy.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "common/interrupt.h"
#include "common/library_name.h"
#include "common/progress.h"
#include "common/text.h"
#include "wfxhost/temporary.h"

namespace tools::wfxhost {
namespace {

namespace fs = std::filesystem;

uint64_t LocalSize(const fs::path& file) {
    std::error_code error;
    const uint64_t size = fs::file_size(file, error);
    return error ? 0 : size;
}

bool LocalExists(const fs::path& file) {
    std::error_code error;
    return fs::exists(file, error);
}

/// Returns true when a local file can be written. An existing file is not changed.
bool CanWrite(const fs::path& file) {
    const bool existed = LocalExists(file);
    const bool can = std::ofstream(file, std::ios::binary | std::ios::app).good();
    std::error_code error;
    if (can && !existed)
        fs::remove(file, error);
    return can;
}

bool DiskIsFull(const fs::path& file) {
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

/// Explains a result code of the interface, for plug-ins that send no reason.
const char* MeaningOf(int result) {
    switch (result) {
        case FS_FILE_NOTFOUND:
            return "it was not found";
        case FS_FILE_READERROR:
            return "it could not be read";
        case FS_FILE_WRITEERROR:
            return "it could not be written";
        case FS_FILE_NOTSUPPORTED:
            return "this plug-in cannot copy that file";
        default:
            return "the plug-in gave no reason";
    }
}

/// The failures that mean the same in both directions. `doubt` is the reason for the others if the plug-in
/// sends none.
CopyResult CopyFailure(Session& session, int result, const std::string& target, const std::string& doubt) {
    std::string reason = session.TakeReason();
    if (IsExisting(result))
        return Failed(ExistsReason(target));
    if (result == FS_FILE_USERABORT)
        return Hopeless("interrupted: " + Quoted(target) + " was not copied");
    if (!session.Answers())
        return Hopeless(reason.empty() ? "the copy failed: the handset stopped answering" : reason);
    return Failed(reason.empty() ? doubt : reason);
}

/// `arrival` is the file that was written, under its temporary or final name.
CopyResult GetFailure(Session& session, int result, const PhonePath& path, const fs::path& localFile,
                      const fs::path& arrival) {
    std::string doubt = "the phone did not send the whole file " + Quoted(path.Text());
    if (result == FS_FILE_NOTFOUND)
        doubt = "the phone has no file " + Quoted(path.Text());
    else if (result != FS_FILE_WRITEERROR)
        doubt = Quoted(path.Text()) + ": " + MeaningOf(result);
    else if (!CanWrite(arrival))
        doubt = "cannot write " + Quoted(localFile.string());
    const bool isFull = DiskIsFull(arrival);
    CopyResult failure =
        CopyFailure(session, result, localFile.string(), isFull ? "the disk is full" : doubt);
    failure.isHopeless = failure.isHopeless || isFull;
    return failure;
}

CopyResult PutFailure(Session& session, int result, const fs::path& localFile, const PhonePath& path) {
    std::string doubt = "the phone did not accept the file as " + Quoted(path.Text()) +
                        "; it may be full, or may not allow the file there";
    if (result == FS_FILE_READERROR || !std::ifstream(localFile, std::ios::binary))
        doubt = "cannot read " + Quoted(localFile.string());
    else if (result != FS_FILE_WRITEERROR)
        doubt = Quoted(path.Text()) + ": " + MeaningOf(result);
    return CopyFailure(session, result, path.Text(), doubt);
}

/// The reason when LibraryName knows no name for a file.
std::string NamelessReason(const fs::path& file) {
    return Quoted(file.string()) + ": a plug-in cannot open a file of that name on this system";
}

ProgressFunction StoppedByInterrupt(const PercentFunction& report) {
    return [&report](int percent) {
        report(percent);
        return Interrupted();
    };
}

/// The local file that a copy from the phone writes: one with a temporary name in the folder of its target,
/// if possible.
class Arrival {
public:
    explicit Arrival(const fs::path& target) : m_target(target) {
        std::error_code error;
        if (fs::is_symlink(target, error) && LocalExists(target))
            m_target = fs::canonical(target, error);
        m_existed = LocalExists(m_target);
        m_file = m_target.parent_path() / FreshName(".quillet-", ".part");
        const bool isPlain = !m_existed || fs::is_regular_file(m_target, error);
        m_isBeside = isPlain && CanWrite(m_file) && (!m_existed || CanWrite(m_target));
        if (!m_isBeside)
            m_file = m_target;
    }

    const fs::path& File() const { return m_file; }

    /// Renames the complete file to its final name. When that fails, removes it and returns the reason.
    std::string Complete() const {
        if (!m_isBeside)
            return "";
        std::error_code error;
        if (m_existed)
            fs::permissions(m_file, fs::status(m_target, error).permissions(), error);
        fs::rename(m_file, m_target, error);
        if (!error)
            return "";
        std::error_code ignored;
        fs::remove(m_file, ignored);
        return "cannot write " + Quoted(m_target.string()) + ": " + error.message();
    }

    /// Removes what a failed copy left. Returns a remark for the user if the file that existed before has
    /// changed.
    std::string CleanUp() const {
        std::error_code error;
        if (m_isBeside || !m_existed)
            fs::remove(m_file, error);
        if (m_isBeside || !m_existed)
            return "";
        return "; " + Quoted(m_file.string()) + (LocalExists(m_file) ? " may be incomplete now" : " is gone");
    }

private:
    fs::path m_target;
    fs::path m_file;
    bool m_existed = false;
    bool m_isBeside = false;
};

} // namespace

CopyResult TryGet(Session& session, const PhonePath& path, const Entry& entry, const fs::path& localFile,
                  bool force, const PercentFunction& report) {
    if (!path.IsRepresentable())
        return Failed(UnrepresentableReason(path));
    if (!force && LocalExists(localFile))
        return Failed(ExistsReason(localFile.string()));
    const Arrival arrival(localFile);
    const std::string name = LibraryName(arrival.File());
    if (name.empty())
        return Failed(NamelessReason(arrival.File()));
    const int code =
        session.Get(path, entry, name, force ? FS_COPYFLAGS_OVERWRITE : 0, StoppedByInterrupt(report));
    if (code != FS_FILE_OK) {
        CopyResult failure = GetFailure(session, code, path, localFile, arrival.File());
        failure.remark += arrival.CleanUp();
        return failure;
    }
    CopyResult result = Done(LocalSize(arrival.File()));
    if (const std::string reason = arrival.Complete(); !reason.empty())
        return Failed(reason);
    // Not a failure: the size of a link may differ from that of the file it leads to.
    if (result.bytes != entry.size)
        result.remark = "the phone lists " + Quoted(path.Text()) + " with " + std::to_string(entry.size) +
                        " bytes, but sent " + std::to_string(result.bytes);
    return result;
}

CopyResult TryPut(Session& session, const fs::path& localFile, const PhonePath& path, bool force,
                  const PercentFunction& report) {
    if (!path.IsRepresentable())
        return Failed(UnrepresentableReason(path));
    const std::string name = LibraryName(localFile);
    if (name.empty())
        return Failed(NamelessReason(localFile));
    const uint64_t size = LocalSize(localFile);
    const int code = session.Put(name, path, force ? FS_COPYFLAGS_OVERWRITE : 0, StoppedByInterrupt(report));
    return code == FS_FILE_OK ? Done(size) : PutFailure(session, code, localFile, path);
}

std::string ExistsReason(const std::string& target) {
    return Quoted(target) + " exists already; --force replaces it";
}

std::string SpeedText(uint64_t bytes, double seconds) {
    char time[32];
    std::snprintf(time, sizeof time, "%.2f", seconds);
    return std::to_string(bytes) + " bytes in " + time + " s (" +
           SizeText(static_cast<double>(bytes) / seconds) + "/s)";
}

} // namespace tools::wfxhost
