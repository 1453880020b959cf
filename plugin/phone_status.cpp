#include "plugin/phone_status.h"

#include "plugin/operation.h"
#include "plugin/reasons.h"
#include "qlib/call_layer.h"

namespace {

constexpr DWORD kKindMask = 0xF000;
constexpr DWORD kFolderKind = 0x4000;

} // namespace

bool PhoneStatus::Query(Operation& operation, const char* sPhonePath) {
    *this = {};
    return QLIB_EFS2_DIAG_STAT(operation.Context(), sPhonePath, &iErrorNo, &iMode, &iSize, &iLinkCount,
                               &iAccessTime, &iModifyTime, &iCreateTime);
}

bool PhoneStatus::IsFolder() const {
    return Exists() && (iMode & kKindMask) == kFolderKind;
}

int CheckTargetIsFree(Operation& operation, const char* sPhonePath, const TargetCodes& codes) {
    PhoneStatus status;
    if (!status.Query(operation, sPhonePath) || (!status.Exists() && !status.IsMissing()))
        return operation.Fail(codes.iUnknown, FailureReason(operation));
    return status.Exists() ? codes.iExists : FS_FILE_OK;
}
