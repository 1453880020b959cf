// The banner window: a picture in the middle of the screen, without frame and with see-through parts.
#pragma once

#include "system/serial.h"

/// SplashWindow shows a bitmap that it owns. The window is painted once, when it is shown; it has no message
/// loop. One thread uses an object. While one shows, Show of another is refused.
class SplashWindow {
public:
    SplashWindow();
    /// Deletes the bitmap; a shown window must have been hidden.
    virtual ~SplashWindow();
    SplashWindow(const SplashWindow&) = delete;
    SplashWindow& operator=(const SplashWindow&) = delete;

    /// SetBitmap takes a bitmap over and deletes the one before; null: none. FALSE, with the bitmap deleted,
    /// when its size cannot be told.
    BOOL SetBitmap(HBITMAP hBitmap);
    /// SetTransparentColor makes a colour see-through; 0: none.
    void SetTransparentColor(COLORREF iColor);
    /// Show shows the window anew. Null when the system refuses it.
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
