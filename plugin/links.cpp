#include "plugin/links.h"

#include <string_view>
#include <vector>

#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/phone_status.h"
#include "qlib/call_layer.h"

namespace {

constexpr size_t kTargetSize = 512;

bool IsReadableFolder(Operation& operation, const std::string& sPhonePath) {
    PhoneStatus status;
    return status.Ask(operation, sPhonePath.c_str()) && status.Exists() && status.IsReadableFolder();
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

std::string LinkTarget(Operation& operation, const char* sPhonePath) {
    char sTarget[kTargetSize] = "";
    return QLIB_EFS2_DIAG_READ_LINK(operation.Context(), sPhonePath, sTarget) ? sTarget : "";
}

std::string LinkedFolder(Operation& operation, const char* sPhonePath) {
    std::string sTarget = LinkTarget(operation, sPhonePath);
    if (sTarget.empty() || !IsReadableFolder(operation, sPhonePath))
        return "";
    if (sTarget.front() == '/')
        return sTarget;
    const std::string sFolder(sPhonePath, EntryName(sPhonePath));
    for (const std::string& sPath : {FromRoot(sFolder + sTarget), FromRoot(sTarget)}) {
        if (IsReadableFolder(operation, sPath))
            return sPath;
    }
    return FromRoot(sPhonePath);
}
