// What the properties of a phone entry say.
#pragma once

#include <string>

#include "platform/types.h"

class Operation;

/// PropertiesText asks the phone about an entry and writes down its answer, at most 1023 bytes; "Uknown
/// properties", and a complaint, when the phone does not know it or does not answer. The space is that of the
/// phone's root file system.
std::string PropertiesText(Operation& operation, const char* sPhonePath);

/// FormatThousands writes a number with a space before each group of three digits: 1234567 is "1 234 567".
std::string FormatThousands(DWORD iValue);
