#include "plugin/links.h"

#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/phone_status.h"
#include "qlib/call_layer.h"

namespace {

constexpr size_t kTargetSize = 512;

bool IsReadableFolder(Operation& operation, const std::string& sPhonePath) {
    PhoneStatus status;
    return status.Query(operation, sPhonePath.c_str()) && status.Exists() && status.IsReadableFolder();
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
