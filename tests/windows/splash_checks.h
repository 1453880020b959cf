// The banner checks that need no plug-in file (splash_checks.cpp).
#pragma once

void ModuleWithoutResources();
void VersionOfASystemLibrary();
void WindowsOfTheBanner();
