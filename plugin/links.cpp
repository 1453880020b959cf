#include "plugin/links.h"

#include <string_view>
#include <vector>

#include "plugin/front_state.h"
#include "plugin/phone_path.h"
#include "plugin/phone_status.h"
#include "qlib/call_layer.h"

namespace {

constexpr size_t kTargetSize = 512;

bool IsReadableFolder(const std::string& sPhonePath) {
    PhoneStatus status;
    return status.Ask(sPhonePath.c_str()) && status.Exists() && status.IsReadableFolder();
}

// The path from the root, without empty, "." and ".." parts: hosts show the path that they are given.
std::string FromRoot(std::string_view sPath) {
    std::vector<std::string_view> parts;
    while (!sPath.empty()) {
        const std::string_view sPart = sPath.substr(0, sPath.find('/'));
        sPath.remove_prefix(std::min(sPart.size() + 1, sPath.size()));
        if (sPart == ".." && !parts.empty())
            parts.pop_back();
        else if (!sPart.empty() && sPart != "." && sPart != "..")
            parts.push_back(sPart);
    }
    std::string sWhole;
    for (const std::string_view sPart : parts)
        sWhole.append("/").append(sPart);
    return sWhole.empty() ? "/" : sWhole;
}

} // namespace

std::string LinkTarget(const char* sPhonePath) {
    char sTarget[kTargetSize] = "";
    return QLIB_EFS2_DIAG_READ_LINK(front.ContextHandle, sPhonePath, sTarget) ? sTarget : "";
}

std::string LinkedFolder(const char* sPhonePath) {
    std::string sTarget = LinkTarget(sPhonePath);
    if (sTarget.empty() || !IsReadableFolder(sPhonePath))
        return "";
    if (sTarget.front() == '/')
        return sTarget;
    const std::string sFolder(sPhonePath, EntryName(sPhonePath));
    for (const std::string& sPath : {FromRoot(sFolder + sTarget), FromRoot(sTarget)}) {
        if (IsReadableFolder(sPath))
            return sPath;
    }
    return FromRoot(sPhonePath);
}
