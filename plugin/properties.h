// The properties of an entry on the phone, as text.
#pragma once

#include <string>

#include "platform/types.h"

class Operation;

/// Queries an entry and returns its properties as a text of at most 1023 bytes. When the phone does not know
/// the entry or does not answer, returns "Uknown properties" and logs a failure. The space is that of the
/// phone's root file system.
std::string PropertiesText(Operation& operation, const char* sPhonePath);

/// Returns a number with a space before each group of three digits: 1234567 is "1 234 567".
std::string FormatThousands(DWORD iValue);
