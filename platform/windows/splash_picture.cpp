// The banner's picture: the module's bitmap with the module's version drawn on it.
#include "platform/splash_window.h"

#include <cstdio>
#include <string>

#include "platform/windows/module.h"
#include "platform/windows/splash_window.h"
#include "platform/windows/version_info.h"

namespace {

constexpr WORD kBannerResource = 205;
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr int kVersionRight = 530; // right edge of the version text
constexpr int kVersionTop = 150;
constexpr UINT kUnicodePage = 1200;
constexpr LANGID kAmericanEnglish = 1033;

/// The module's product version; empty when it cannot be read.
std::string VersionText() {
    const CVFXVersionInfo info(kUnicodePage, kAmericanEnglish);
    VersionRecord record;
    if (!info.Read(record, ThisModuleFile()))
        return "";
    const WORD(&aNumbers)[4] = record.aProductVersion;
    char sText[32];
    std::snprintf(sText, sizeof sText, "%d.%d.%d.%d", aNumbers[0], aNumbers[1], aNumbers[2], aNumbers[3]);
    return sText;
}

void DrawVersion(HBITMAP hBitmap, const std::string& sVersion) {
    const HDC hMemory = CreateCompatibleDC(nullptr);
    if (hMemory == nullptr)
        return;
    const HGDIOBJ hBefore = SelectObject(hMemory, hBitmap);
    SetTextAlign(hMemory, TA_RIGHT);
    TextOutA(hMemory, kVersionRight, kVersionTop, sVersion.data(), static_cast<int>(sVersion.size()));
    SelectObject(hMemory, hBefore);
    DeleteDC(hMemory);
}

/// Makes the window with its finished picture, not shown yet.
std::unique_ptr<SplashWindow> MakeSplash() {
    auto pSplash = std::make_unique<SplashWindow>();
    const HBITMAP hBitmap = LoadBitmapA(ThisModule(), MAKEINTRESOURCEA(kBannerResource));
    if (hBitmap != nullptr)
        DrawVersion(hBitmap, VersionText());
    pSplash->SetBitmap(hBitmap);
    pSplash->SetTransparentColor(kWhite);
    return pSplash;
}

} // namespace

class ShownSplash::Window {
public:
    Window() : m_pSplash(MakeSplash()), m_bShown(m_pSplash->Show() != nullptr) {}
    ~Window() { m_pSplash->Hide(); }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    bool IsShown() const { return m_bShown; }

private:
    std::unique_ptr<SplashWindow> m_pSplash;
    const bool m_bShown;
};

ShownSplash::ShownSplash() {
    try {
        m_pWindow = std::make_unique<Window>();
    } catch (const std::exception&) {
        // Out of memory: the caller continues without a picture.
    }
}

ShownSplash::~ShownSplash() {}

bool ShownSplash::IsOnScreen() const {
    return m_pWindow && m_pWindow->IsShown();
}
