#include "platform/windows/splash_window.h"

#include <utility>

namespace {

constexpr UINT kClassStyle = CS_BYTEALIGNCLIENT | CS_BYTEALIGNWINDOW;
constexpr int kExtraBytes = 30;

// Looked up by name, because the library must also load on old systems that lack the function.
decltype(&::SetLayeredWindowAttributes) pfnSetLayeredWindowAttributes = nullptr;

// The object whose window is handling messages.
SplashWindow* pServed = nullptr;

} // namespace

SplashWindow::SplashWindow() {
    if (HMODULE hUser = GetModuleHandleA("USER32.DLL"))
        pfnSetLayeredWindowAttributes = reinterpret_cast<decltype(pfnSetLayeredWindowAttributes)>(
            reinterpret_cast<void*>(GetProcAddress(hUser, "SetLayeredWindowAttributes")));
}

SplashWindow::~SplashWindow() {
    DeleteBitmap();
}

void SplashWindow::DeleteBitmap() {
    if (Bitmap != nullptr)
        DeleteObject(std::exchange(Bitmap, nullptr));
    Width = Height = 0;
}

BOOL SplashWindow::SetBitmap(HBITMAP hBitmap) {
    DeleteBitmap();
    if (hBitmap == nullptr)
        return TRUE;
    Bitmap = hBitmap;
    BITMAP facts = {};
    if (GetObjectA(hBitmap, sizeof facts, &facts) == 0) {
        DeleteBitmap();
        return FALSE;
    }
    Width = facts.bmWidth;
    Height = facts.bmHeight;
    return TRUE;
}

void SplashWindow::SetTransparentColor(COLORREF iColor) {
    ColorKey = iColor;
    ApplyColorKey();
}

void SplashWindow::ApplyColorKey() {
    if (!Window || !pfnSetLayeredWindowAttributes || ColorKey == 0)
        return;
    SetWindowLongA(Window, GWL_EXSTYLE, GetWindowLongA(Window, GWL_EXSTYLE) | WS_EX_LAYERED);
    pfnSetLayeredWindowAttributes(Window, ColorKey, 0, LWA_COLORKEY);
}

ATOM SplashWindow::Register() const {
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = kClassStyle;
    windowClass.lpfnWndProc = WindowProc;
    windowClass.cbWndExtra = kExtraBytes;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_WAIT));
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(LTGRAY_BRUSH));
    windowClass.lpszClassName = ClassName;
    return RegisterClassExA(&windowClass);
}

HWND SplashWindow::Show() {
    Hide();
    if (!Register())
        return nullptr;
    const int iLeft = (GetSystemMetrics(SM_CXFULLSCREEN) - Width) / 2;
    const int iTop = (GetSystemMetrics(SM_CYFULLSCREEN) - Height) / 2;
    Window = CreateWindowExA(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, ClassName, "Banner", WS_POPUP, iLeft, iTop,
                             Width, Height, nullptr, nullptr, GetModuleHandleA(nullptr), this);
    if (Window) {
        ApplyColorKey();
        ShowWindow(Window, SW_SHOW);
        UpdateWindow(Window);
    } else {
        UnregisterClassA(ClassName, GetModuleHandleA(nullptr));
    }
    return Window;
}

BOOL SplashWindow::Hide() {
    if (!Window)
        return FALSE;
    DestroyWindow(std::exchange(Window, nullptr));
    UnregisterClassA(ClassName, GetModuleHandleA(nullptr));
    return TRUE;
}

void SplashWindow::Paint() {
    if (!Bitmap)
        return;
    PAINTSTRUCT paint;
    const HDC hScreen = BeginPaint(Window, &paint);
    if (const HDC hMemory = CreateCompatibleDC(hScreen)) {
        const HGDIOBJ hBefore = SelectObject(hMemory, Bitmap);
        BitBlt(hScreen, 0, 0, Width, Height, hMemory, 0, 0, SRCCOPY);
        SelectObject(hMemory, hBefore);
        DeleteDC(hMemory);
    }
    EndPaint(Window, &paint);
}

LRESULT CALLBACK SplashWindow::WindowProc(HWND hWindow, UINT iMessage, WPARAM wParam, LPARAM lParam) {
    if (iMessage == WM_CREATE) {
        pServed = static_cast<SplashWindow*>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams);
        pServed->Window = hWindow;
    }
    const bool bServed = pServed != nullptr && pServed->Window == hWindow;
    if (iMessage == WM_PAINT && bServed) {
        pServed->Paint();
        return 0;
    }
    if (iMessage == WM_DESTROY && (bServed || (pServed != nullptr && pServed->Window == nullptr)))
        pServed = nullptr;
    return DefWindowProcA(hWindow, iMessage, wParam, lParam);
}
