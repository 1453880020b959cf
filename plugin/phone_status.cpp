#include "plugin/phone_status.h"

#include "plugin/front_state.h"
#include "qlib/call_layer.h"

namespace {

constexpr DWORD kKindMask = 0xF000;
constexpr DWORD kFolderKind = 0x4000;

} // namespace

bool PhoneStatus::Ask(const char* sPhonePath) {
    *this = {};
    return QLIB_EFS2_DIAG_STAT(front.ContextHandle, sPhonePath, &iErrorNo, &iMode, &iSize, &iLinkCount,
                               &iAccessTime, &iModifyTime, &iCreateTime);
}

bool PhoneStatus::IsFolder() const {
    return Exists() && (iMode & kKindMask) == kFolderKind;
}
