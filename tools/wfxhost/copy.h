// The copy of one file, with the reason of its failure in words.
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
    bool isHopeless = false; // not done, and the next file would not be, either
    uint64_t bytes = 0;      // copied
    std::string remark;      // why it is not done; or what should be known about a copy that is
};

/// Receives the percentage of a running copy.
using PercentFunction = std::function<void(int percent)>;

/// TryGet copies a phone file to `localFile`, and TryPut the other way. An existing target is replaced only
/// with `force`. Ctrl-C stops them, under an InterruptGuard.
///
/// A file from the phone arrives under another name in the folder of `localFile` and takes its final name
/// when it is complete, so that a failure leaves an existing file as it was. That is not possible where the
/// target is no plain file or its folder takes no new files; what a failure did to such a target is in the
/// remark.
CopyResult TryGet(Session& session, const PhonePath& path, const Entry& entry,
                  const std::filesystem::path& localFile, bool force, const PercentFunction& report);
CopyResult TryPut(Session& session, const std::filesystem::path& localFile, const PhonePath& path, bool force,
                  const PercentFunction& report);

/// ExistsReason returns the reason why a copy over an existing target is not done.
std::string ExistsReason(const std::string& target);

/// SpeedText returns a number of bytes and how fast they were copied: "30000 bytes in 0.02 s (1.5 MB/s)".
std::string SpeedText(uint64_t bytes, double seconds);

} // namespace tools::wfxhost
