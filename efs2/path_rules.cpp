// The parts of a phone path, and its maximum length.
#include <cstring>

#include "efs2/metadata.h"

namespace {

constexpr size_t kLongestPath = 128;
constexpr size_t kLongestName = 80;

/// The offset of the name: after the last '/', or 0.
size_t NameStart(const std::string& sPath) {
    const size_t iSlash = sPath.rfind('/');
    return iSlash == std::string::npos ? 0 : iSlash + 1;
}

} // namespace

// NOLINTBEGIN(performance-unnecessary-value-param): the interface takes both paths by value.
void Efs2Metadata::EfsFnSplit(std::string sPath, char* sDir, char* sName) {
    const size_t iName = NameStart(sPath);
    std::memcpy(sDir, sPath.c_str(), iName);
    sDir[iName] = '\0';
    std::memcpy(sName, sPath.c_str() + iName, sPath.size() - iName + 1);
}

bool Efs2Metadata::EfsIsLegalName(std::string sPath) {
    return sPath.size() <= kLongestPath && sPath.size() - NameStart(sPath) <= kLongestName;
}
// NOLINTEND(performance-unnecessary-value-param)
