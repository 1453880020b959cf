// Targets of links, as the phone stores them and as programs on this computer see them.
#pragma once

#include <string>

namespace tools::mount {

/// Returns the target of the link at `path` in a form that can be followed within the mounted folder: an
/// absolute target of the phone becomes relative to the link's folder.
std::string ShownTarget(const std::string& path, const std::string& target);

/// Returns the target that the phone is to store: a relative one unchanged, an absolute one as the phone's
/// own path. Throws PosixError: EPERM for a target outside `mountPoint`, which does not exist on the phone;
/// ENAMETOOLONG.
std::string StoredTarget(const std::string& target, const std::string& mountPoint);

} // namespace tools::mount
