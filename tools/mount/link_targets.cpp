#include "mount/link_targets.h"

#include <algorithm>
#include <cerrno>

#include "mount/attributes.h"
#include "mount/posix_error.h"

namespace tools::mount {
namespace {

constexpr size_t kLongestTarget = 500;

} // namespace

std::string ShownTarget(const std::string& path, const std::string& target) {
    if (!target.starts_with('/'))
        return target;
    std::string shown;
    for (auto slashes = std::ranges::count(path, '/'); slashes > 1; --slashes)
        shown += "../";
    shown += target.substr(std::min(target.find_first_not_of('/'), target.size()));
    return shown.empty() ? "." : shown;
}

std::string StoredTarget(const std::string& target, const std::string& mountPoint) {
    if (target.size() > kLongestTarget)
        throw PosixError{ENAMETOOLONG};
    if (!target.starts_with('/'))
        return target;
    if (!IsWithin(target, mountPoint))
        throw PosixError{EPERM};
    return target == mountPoint ? "/" : target.substr(mountPoint.size());
}

} // namespace tools::mount
