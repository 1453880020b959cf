// Copying one file; the reason of a failure in words.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// The result of the copy of one file.
struct CopyResult {
    bool isDone = false;
    bool isHopeless = false; // not done, and other files would fail as well
    uint64_t bytes = 0;      // copied
    std::string remark;      // why the copy failed, or a note about one that is done
};

/// Receives the percentage of a running copy.
using PercentFunction = std::function<void(int percent)>;

/// TryGet copies a phone file to `localFile`, and TryPut copies the other way. An existing target is replaced
/// only if `force` is set. Under an InterruptGuard, Ctrl-C stops them.
///
/// A file from the phone is written to the folder of `localFile` under a temporary name and renamed when it
/// is complete, so a failure leaves an existing file unchanged. That is impossible if the target is not a
/// regular file or its folder accepts no new files; `remark` then says what happened to the target.
CopyResult TryGet(Session& session, const PhonePath& path, const Entry& entry,
                  const std::filesystem::path& localFile, bool force, const PercentFunction& report);
CopyResult TryPut(Session& session, const std::filesystem::path& localFile, const PhonePath& path, bool force,
                  const PercentFunction& report);

/// Returns the reason for not replacing an existing target.
std::string ExistsReason(const std::string& target);

/// Returns how many bytes were copied and how fast: "30000 bytes in 0.02 s (1.5 MB/s)".
std::string SpeedText(uint64_t bytes, double seconds);

} // namespace tools::wfxhost
