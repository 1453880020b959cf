#include "plugin/quote_command.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "platform/host_interface.h"
#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/phone_status.h"
#include "plugin/reasons.h"
#include "qlib/call_layer.h"

namespace {

/// The size of an argument, and of a path made from one, including its zero.
constexpr size_t kArgumentSize = 512;
constexpr char kTooLong[] = "the path is too long";
constexpr char kWhiteSpace[] = " \t\n\v\f\r";

void Trim(std::string& sText) {
    sText.erase(0, sText.find_first_not_of(kWhiteSpace));
    sText.erase(sText.find_last_not_of(kWhiteSpace) + 1);
}

/// Removes one argument from the beginning of sText and returns it.
std::string TakeArgument(std::string& sText) {
    Trim(sText);
    size_t iStop;
    if (sText.starts_with('"')) {
        sText.erase(0, 1);
        iStop = sText.find('"');
        if (iStop != std::string::npos)
            sText.erase(iStop, 1);
    } else {
        iStop = sText.find_first_of(kWhiteSpace);
    }
    if (iStop == std::string::npos)
        iStop = sText.size();
    std::string sArgument = sText.substr(0, iStop + 1);
    Trim(sArgument);
    sText.erase(0, iStop);
    return sArgument;
}

/// Removes double quotes, except the second of two adjacent ones.
void RemoveQuotes(std::string& sText) {
    for (size_t i = 0; i < sText.size(); ++i)
        if (sText[i] == '"')
            sText.erase(i, 1);
}

bool Fits(const std::string& sText) {
    return sText.size() < kArgumentSize;
}

/// Returns true when the phone reports a file system for the path.
bool IsOnPhone(Operation& operation, const std::string& sPath) {
    DWORD iErrorNo = 0;
    DWORD iUnused[9] = {};
    return QLIB_EFS2_DIAG_STATFS(operation.Context(), sPath.c_str(), &iErrorNo, &iUnused[0], &iUnused[1],
                                 &iUnused[2], &iUnused[3], &iUnused[4], &iUnused[5], &iUnused[6], &iUnused[7],
                                 &iUnused[8]) &&
           iErrorNo == 0;
}

int ChangeFolder(Operation& operation, char* sDirectory, char cSeparator, std::string sArgument) {
    RemoveQuotes(sArgument);
    std::replace(sArgument.begin(), sArgument.end(), '\\', '/');
    const std::string sPath = FromRoot(sArgument.starts_with('/') ? sArgument : sDirectory + sArgument);
    operation.Describe("change folder", sPath);
    if (!Fits(sPath))
        return operation.Fail(FS_EXEC_ERROR, kTooLong);
    PhoneStatus status;
    if (!IsOnPhone(operation, sPath) || !status.Query(operation, sPath.c_str()) || !status.Exists())
        return operation.Fail(FS_EXEC_ERROR, FailureReason(operation));
    if (!status.IsFolder())
        return operation.Fail(FS_EXEC_ERROR, "it is not a folder");
    return WriteBack(sPath, cSeparator, sDirectory) ? FS_EXEC_SYMLINK
                                                    : operation.Fail(FS_EXEC_ERROR, kTooLong);
}

int MakeLink(Operation& operation, const char* sDirectory, const char* sArguments) {
    std::string sTarget;
    std::string sLink;
    ParseTwoArgs(sArguments, sTarget, sLink);
    sTarget.insert(0, sDirectory);
    sLink = sDirectory + sLink + ".lnk";
    operation.Describe("make link", sLink, sTarget);
    if (!Fits(sTarget) || !Fits(sLink))
        return operation.Fail(FS_EXEC_ERROR, kTooLong);
    StripLeadingSeparators(sLink.data());
    if (!IsOnPhone(operation, sTarget) ||
        !QLIB_EFS2_DIAG_CREATE_LINK(operation.Context(), sLink.c_str(), sTarget.c_str()))
        return operation.Fail(FS_EXEC_ERROR, FailureReason(operation));
    // A refusal does not show in the result.
    return IsRefused(operation) ? operation.Fail(FS_EXEC_OK, FailureReason(operation)) : FS_EXEC_OK;
}

} // namespace

void ParseTwoArgs(std::string sText, std::string& sFirst, std::string& sSecond) {
    sFirst = TakeArgument(sText);
    sSecond = TakeArgument(sText);
}

bool WriteBack(const std::string& sPhonePath, char cSeparator, char* sHostName) {
    if (sPhonePath.size() >= MAX_PATH)
        return false;
    std::memcpy(sHostName, sPhonePath.c_str(), sPhonePath.size() + 1);
    ToHostPath(sHostName, cSeparator);
    return true;
}

int RunQuoteCommand(Operation& operation, char* sDirectory, const char* sCommand) {
    constexpr std::string_view kChangeFolder = "cd ";
    constexpr std::string_view kMakeLink = "ln ";
    const char cSeparator = SeparatorOf(sDirectory);
    const std::string_view sWhole = sCommand;
    ToPhonePath(sDirectory);
    if (sWhole.starts_with(kChangeFolder))
        return ChangeFolder(operation, sDirectory, cSeparator, sCommand + kChangeFolder.size());
    if (sWhole.starts_with(kMakeLink))
        return MakeLink(operation, sDirectory, sCommand + kMakeLink.size());
    return FS_EXEC_OK;
}
