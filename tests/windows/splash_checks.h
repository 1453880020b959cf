// The checks of the banner that need no plug-in file (splash_checks.cpp).
#pragma once

void ModuleWithoutResources();
void VersionOfASystemLibrary();
void WindowsOfTheBanner();
