// The commands that a user types in the host's command line.
#pragma once

#include <string>

class Operation;

/// Runs "cd FOLDER" or "ln TARGET NAME". Returns the host's FS_EXEC_... codes. sDirectory is the host's
/// buffer (MAX_PATH bytes) with the current folder and a separator at its end. It is converted to the phone's
/// form, and "cd " writes the new folder to it in the host's form.
int RunQuoteCommand(Operation& operation, char* sDirectory, const char* sCommand);

/// Parses two arguments, which are separated by white space; each may be in double quotes. Missing ones are
/// empty. The character after a closing quote is appended to the argument and also begins the next one.
void ParseTwoArgs(std::string sText, std::string& sFirst, std::string& sSecond);

/// Copies a phone path with the given separator to the host's buffer of MAX_PATH bytes. Returns false, with
/// the buffer unchanged, when it does not fit.
bool WriteBack(const std::string& sPhonePath, char cSeparator, char* sHostName);
