// The copy of one file, with its failure put in words.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// What became of the copy of one file.
struct CopyResult {
    bool isDone = false;
    bool isHopeless = false; // not done, and the next file would fare no better
    uint64_t bytes = 0;      // copied
    std::string remark;      // why it is not done; or what there is to say about a copy that is
};

/// Is told the percentage of a running copy.
using PercentFunction = std::function<void(int percent)>;

/// TryGet copies a phone file to `localFile`, and TryPut the other way. An existing target is replaced only
/// with `force`. A copy that fails leaves nothing new behind; what it did to a file that it was to replace is
/// in the remark. Ctrl-C stops it, under an InterruptGuard.
CopyResult TryGet(Session& session, const PhonePath& path, const Entry& entry, const std::string& localFile,
                  bool force, const PercentFunction& report);
CopyResult TryPut(Session& session, const std::string& localFile, const PhonePath& path, bool force,
                  const PercentFunction& report);

/// CopyFromPhone and CopyToPhone do the same with the progress on standard output, and throw Failure when the
/// copy is not done.
void CopyFromPhone(Session& session, const PhonePath& path, const Entry& entry, const std::string& localFile,
                   bool force);
void CopyToPhone(Session& session, const std::string& localFile, const PhonePath& path, bool force);

/// SpeedText tells a number of bytes and how fast they were copied: "30000 bytes in 0.02 s (1.5 MB/s)".
std::string SpeedText(uint64_t bytes, double seconds);

} // namespace tools::wfxhost
