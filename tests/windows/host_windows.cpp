#include "tests/windows/host_windows.h"

#include <windows.h>

#include <thread>

#include "tests/windows/checks.h"

namespace {

HWND FindMine(const char* sClass, const char* sTitle) {
    const HWND hWindow = FindWindowA(sClass, sTitle);
    DWORD iProcess = 0;
    GetWindowThreadProcessId(hWindow, &iProcess);
    return iProcess == GetCurrentProcessId() ? hWindow : nullptr;
}

std::string TextOf(HWND hWindow) {
    std::string sText(4096, '\0');
    sText.resize(static_cast<size_t>(
        SendMessageA(hWindow, WM_GETTEXT, sText.size(), reinterpret_cast<LPARAM>(sText.data()))));
    return sText;
}

/// Returns the verdict on the last screenshot taken before the banner disappeared. The first ones may be
/// taken before the window system has painted the banner.
std::string Photograph() {
    HWND hBanner = nullptr;
    if (!Eventually(
            [&] { return (hBanner = FindMine("SPLASH", "Banner")) != nullptr && IsWindowVisible(hBanner); }))
        return "no banner appeared";
    RECT place = {};
    GetWindowRect(hBanner, &place);
    const LONG iRight = GetSystemMetrics(SM_CXFULLSCREEN);
    const LONG iBottom = GetSystemMetrics(SM_CYFULLSCREEN);
    if (place.right - place.left != 557 || place.bottom - place.top != 200 ||
        place.left != (iRight - 557) / 2 || place.top != (iBottom - 200) / 2)
        return "the banner is not centred";
    const LONG iStyle = GetWindowLongA(hBanner, GWL_EXSTYLE);
    if ((iStyle & (WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_LAYERED)) !=
        (WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_LAYERED))
        return "the banner has the wrong window style";
    std::string sOutcome = "every screenshot was taken too late";
    while (sOutcome != "ok" && IsWindow(hBanner)) {
        const std::string sLatest =
            Ask("banner " + std::to_string(place.left) + " " + std::to_string(place.top));
        if (IsWindow(hBanner))
            sOutcome = sLatest;
    }
    return sOutcome;
}

} // namespace

std::string ReadMessageBox(const std::string& sTitle, const std::function<void()>& whileOpen) {
    HWND hBox = nullptr;
    if (!Eventually(
            [&] { return (hBox = FindMine("#32770", sTitle.c_str())) != nullptr && IsWindowVisible(hBox); }))
        return "(no message box)";
    // The icon is a static control too, but only the text's control has a text.
    std::string sText;
    for (HWND hChild = nullptr; (hChild = FindWindowExA(hBox, hChild, "Static", nullptr)) != nullptr;)
        sText += TextOf(hChild);
    if (whileOpen)
        whileOpen();
    PostMessageA(hBox, WM_COMMAND, IDOK, 0);
    return sText;
}

std::string PhotographBanner(const std::function<void()>& show) {
    constexpr int kAttempts = 5;
    std::string sOutcome;
    for (int i = 0; i < kAttempts && sOutcome != "ok"; ++i) {
        std::thread photographer([&] { sOutcome = Photograph(); });
        show();
        photographer.join();
    }
    return sOutcome;
}
