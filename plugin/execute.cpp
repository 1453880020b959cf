// Execute verbs: following links, properties, typed commands.
#include <cstring>
#include <string_view>

#include "plugin/entry_points.h"
#include "plugin/links.h"
#include "plugin/operation.h"
#include "plugin/phone_path.h"
#include "plugin/properties.h"
#include "plugin/quote_command.h"
#include "plugin/splash.h"

namespace {

constexpr std::string_view kOpen = "open";
constexpr std::string_view kProperties = "properties";
constexpr std::string_view kQuote = "quote ";
constexpr std::chrono::milliseconds kBannerTime(2000);

/// Hosts whose root is "\" request the plug-in's own properties with it; "/" means the phone's root.
bool IsPluginItself(std::string_view sName) {
    return sName.size() == 1 && sName != "/";
}

int ShowBanner() {
    const Splash splash;
    splash.Hold(kBannerTime);
    return FS_EXEC_OK;
}

int Open(Operation& operation, const char* sPhonePath, char* sHostName) {
    const std::string sFolder = LinkedFolder(operation, sPhonePath);
    if (sFolder.empty())
        return FS_EXEC_YOURSELF;
    return WriteBack(sFolder, SeparatorOf(sHostName), sHostName)
               ? FS_EXEC_SYMLINK
               : operation.Fail(FS_EXEC_ERROR,
                                "the link leads to a path that is too long for the file manager");
}

int ShowProperties(Operation& operation, HWND hMainWindow, const char* sPhonePath) {
    operation.ShowMessage(hMainWindow, "Properties", PropertiesText(operation, sPhonePath));
    return FS_EXEC_OK;
}

int Execute(Operation& operation, HWND hMainWindow, char* sHostName, std::string_view sVerb) {
    char sPhonePath[kMaxPathSize];
    CopyHostPath(sHostName, sPhonePath);
    operation.Describe(sVerb == kOpen ? "open" : "properties", sPhonePath);
    if (sVerb == kOpen)
        return Open(operation, sPhonePath, sHostName);
    if (sVerb == kProperties)
        return ShowProperties(operation, hMainWindow, sPhonePath);
    if (sVerb.starts_with(kQuote))
        return RunQuoteCommand(operation, sHostName, sVerb.data() + kQuote.size());
    return FS_EXEC_OK;
}

} // namespace

int HOST_CALL FsExecuteFile(HWND hMainWindow, char* sRemoteName, char* sVerb) {
    if (!sVerb || !IsUsableHostPath(sRemoteName))
        return RefusePath("execute", FS_EXEC_ERROR);
    if (sVerb == kProperties && IsPluginItself(sRemoteName))
        return ShowBanner();
    return UsePhone(FS_EXEC_ERROR, [&](Operation& operation) {
        return Execute(operation, hMainWindow, sRemoteName, sVerb);
    });
}
