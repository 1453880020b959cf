// What links hold, on the phone and as programs on this computer see it.
#pragma once

#include <string>

namespace tools::mount {

/// ShownTarget gives the target of the link at `path` so that it can be followed below the mount point: an
/// absolute target of the phone counts from the link's folder instead.
std::string ShownTarget(const std::string& path, const std::string& target);

/// StoredTarget gives what the phone is to keep of a target: a relative one as it is, an absolute one as the
/// phone's own path. Throws PosixError: EPERM for one that leads out of `mountPoint`, as the phone cannot
/// know where; ENAMETOOLONG.
std::string StoredTarget(const std::string& target, const std::string& mountPoint);

} // namespace tools::mount
