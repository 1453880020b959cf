// The banner's window and the version text, with and without a picture.
#include "tests/windows/splash_checks.h"

#include "platform/splash_window.h"
#include "platform/windows/module.h"
#include "platform/windows/splash_window.h"
#include "platform/windows/version_info.h"
#include "tests/windows/checks.h"

namespace {

HWND Banner() {
    return FindWindowA("SPLASH", "Banner");
}

bool IsLayered(HWND hWindow) {
    return (GetWindowLongA(hWindow, GWL_EXSTYLE) & WS_EX_LAYERED) != 0;
}

} // namespace

void ModuleWithoutResources() {
    const LCID iLocale = GetThreadLocale();
    VersionRecord record = {{1, 2, 3, 4}, {}};
    EXPECT(!CVFXVersionInfo(1200, 1033).Read(record, ThisModuleFile()));
    EXPECT_EQ(record.aProductVersion[3], 4);
    EXPECT_EQ(GetThreadLocale(), iLocale);
    {
        const ShownSplash splash;
        EXPECT(Banner() != nullptr); // with an empty size
    }
    EXPECT(Banner() == nullptr);
}

void VersionOfASystemLibrary() {
    VersionRecord record = {};
    const CVFXVersionInfo info(1200, 1033);
    EXPECT(info.Read(record, L"  kernel32.dll\t"));
    EXPECT(record.aProductVersion[0] >= 5);
    EXPECT(!info.Read(record, L"no such file"));
}

void WindowsOfTheBanner() {
    SplashWindow splash;
    EXPECT(!splash.Hide());
    EXPECT(splash.SetBitmap(nullptr));
    EXPECT(!splash.SetBitmap(reinterpret_cast<HBITMAP>(1))); // not a bitmap
    EXPECT(splash.SetBitmap(CreateBitmap(30, 20, 1, 32, nullptr)));
    splash.SetTransparentColor(0);
    const HWND hFirst = splash.Show();
    EXPECT(IsWindow(hFirst));
    EXPECT(!IsLayered(hFirst));
    RECT place = {};
    GetWindowRect(hFirst, &place);
    EXPECT_EQ(place.right - place.left, LONG{30});
    splash.SetTransparentColor(RGB(255, 255, 255));
    EXPECT(IsLayered(hFirst));
    const HWND hSecond = splash.Show();
    EXPECT(!IsWindow(hFirst));
    EXPECT(IsLayered(hSecond));
    EXPECT(splash.Hide());
    EXPECT(!splash.Hide());
    EXPECT(!IsWindow(hSecond));
}
