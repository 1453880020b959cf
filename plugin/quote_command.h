// The commands that the user types in the host's command line inside the phone's folders.
#pragma once

#include <string>

class Operation;

/// RunQuoteCommand carries out "cd FOLDER" or "ln TARGET NAME"; returns the host's FS_EXEC_... codes.
/// sDirectory is the host's buffer (MAX_PATH bytes) with the current folder, a separator at its end: it is
/// changed to the phone's form and, by "cd ", to the new folder in the host's form.
int RunQuoteCommand(Operation& operation, char* sDirectory, const char* sCommand);

/// ParseTwoArgs takes two arguments, separated by white space, the first of which or both may stand in double
/// quotes, out of a command's rest. Missing ones are empty. What follows a closing quote at once belongs to
/// the argument with its first character, and begins the next one.
void ParseTwoArgs(std::string sText, std::string& sFirst, std::string& sSecond);

/// WriteBack copies a phone path with the given separator into the host's buffer of MAX_PATH bytes. False,
/// with the buffer as it was, when it does not fit.
bool WriteBack(const std::string& sPhonePath, char cSeparator, char* sHostName);
