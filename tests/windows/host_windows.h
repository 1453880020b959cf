// The windows that the plug-in shows.
#pragma once

#include <functional>
#include <string>

/// Waits for a message box with that title, calls `whileOpen`, closes the box and returns its text. Call it
/// on a thread other than the one that shows the box.
std::string ReadMessageBox(const std::string& sTitle, const std::function<void()>& whileOpen = nullptr);

/// Calls `show`, which shows the banner for two seconds on the calling thread, has a screenshot taken and
/// checked meanwhile, and returns the outcome: "ok", or what is wrong with the banner. Repeats this if the
/// screenshot comes too late.
std::string PhotographBanner(const std::function<void()>& show);
