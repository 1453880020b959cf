// The banner window: a picture in the middle of the screen, frameless and with transparent parts.
#pragma once

#include "system/serial.h"

/// SplashWindow shows a bitmap that it owns. The window is painted once, when shown, and has no message loop.
/// Used by one thread. While one is shown, Show of another fails.
class SplashWindow {
public:
    SplashWindow();
    /// Deletes the bitmap; a shown window must be hidden first.
    virtual ~SplashWindow();
    SplashWindow(const SplashWindow&) = delete;
    SplashWindow& operator=(const SplashWindow&) = delete;

    /// SetBitmap takes ownership of a bitmap and deletes the previous one; null: none. FALSE, with the bitmap
    /// deleted, when its size cannot be determined.
    BOOL SetBitmap(HBITMAP hBitmap);
    /// SetTransparentColor makes a colour transparent; 0: none.
    void SetTransparentColor(COLORREF iColor);
    /// Show creates and shows the window. Null when the system refuses.
    HWND Show();
    /// Hide destroys the window; FALSE when there is none.
    BOOL Hide();

private:
    static LRESULT CALLBACK WindowProc(HWND hWindow, UINT iMessage, WPARAM wParam, LPARAM lParam);

    void ApplyColorKey();
    ATOM Register() const;
    void Paint();
    void DeleteBitmap();

    HWND Window = nullptr;
    COLORREF ColorKey = 0;
    int Width = 0;
    int Height = 0;
    HBITMAP Bitmap = nullptr;
    const char* ClassName = "SPLASH";
};
