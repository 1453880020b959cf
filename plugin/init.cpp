// Start and end of the plug-in, and of each operation of the host.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <optional>

#include "plugin/connection.h"
#include "plugin/entry_points.h"
#include "plugin/operation.h"
#include "plugin/splash.h"
#include "qlib/call_layer.h"

namespace {

constexpr char kRootName[] = "Korvane EFS";
constexpr std::chrono::milliseconds kBannerTime(1000);

} // namespace

int HOST_CALL FsInit(int iPluginNumber, tProgressProc pfnProgress, tLogProc pfnLog, tRequestProc pfnRequest) {
    std::optional<Splash> splash;
    UsePhone(0, [&](Operation& operation) {
        if (!operation.MayChangeConnection())
            return 0;
        FrontState& state = operation.State();
        state.PluginNumber = iPluginNumber;
        state.ProgressProc = pfnProgress;
        state.LogProc = pfnLog;
        state.RequestProc = pfnRequest;
        splash.emplace();
        operation.Log(MSGTYPE_CONNECT, "CONNECT");
        operation.FlushLog();
        QLIB_SetQpstMode(0);
        EnsureConnected(operation);
        return 0;
    });
    if (splash)
        splash->Hold(kBannerTime);
    return 0;
}

void HOST_CALL FsGetDefRootName(char* sRootName, int iSize) {
    if (!sRootName || iSize <= 0)
        return;
    const size_t iLength = std::min(sizeof kRootName, static_cast<size_t>(iSize)) - 1;
    std::memcpy(sRootName, kRootName, iLength);
    sRootName[iLength] = '\0';
}

void HOST_CALL FsStatusInfo(char*, int iStartEnd, int) {
    if (iStartEnd != FS_STATUS_START && iStartEnd != FS_STATUS_END)
        return;
    UsePhone(0, [&](Operation& operation) {
        if (iStartEnd == FS_STATUS_START) {
            EnsureConnected(operation);
            StopIdleTimer(operation);
        } else {
            RestartIdleTimer(operation);
        }
        return 0;
    });
}

BOOL HOST_CALL FsDisconnect(char*) {
    return UsePhone(0, [](Operation& operation) {
        if (!operation.MayChangeConnection())
            return 0;
        Disconnect(operation);
        return 1;
    });
}
