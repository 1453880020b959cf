// What the plug-in shows on the screen.
#pragma once

#include <functional>
#include <string>

/// ReadMessageBox waits for a message box of that title, calls `whileOpen`, dismisses it and returns its
/// text. To be called on a thread other than the one that shows it.
std::string ReadMessageBox(const std::string& sTitle, const std::function<void()>& whileOpen = nullptr);

/// PhotographBanner waits for the banner, has it photographed and looked at, and returns the outcome: "ok",
/// or what is wrong with it. Likewise. `show` shows it on the calling thread, for two seconds, as often as
/// the photograph comes too late.
std::string PhotographBanner(const std::function<void()>& show);
