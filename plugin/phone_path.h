// Conversion of paths between the host's form and the phone's.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The longest host path, including its zero.
constexpr size_t kMaxPathSize = 1024;

/// Returns true for a path that is not null and not longer than kMaxPathSize. All functions below except
/// CopyHostPath and TakeHostPath require such a path.
bool IsUsableHostPath(const char* sPath);

/// Writes the phone path of a host path to sPhonePath (kMaxPathSize bytes), by ToPhonePath and
/// StripLeadingSeparators. Returns false and writes nothing when the host path is not usable.
bool CopyHostPath(const char* sHostPath, char* sPhonePath);

/// Does the same, and also overwrites the host's text with the phone path where hosts allow it.
bool TakeHostPath(char* sHostPath, char* sPhonePath);

/// Replaces every backslash by a slash, and every run of slashes by one. A path of at least 3 characters
/// whose second or third is ':' is a drive path and is not changed.
void ToPhonePath(char* sPath);

/// Removes all leading slashes and backslashes. The root becomes the empty text.
void StripLeadingSeparators(char* sPath);

/// Replaces every slash by the host's separator.
void ToHostPath(char* sPath, char cSeparator);

/// Returns the first separator of a host path, or the host's usual one when it has none. Paths that are
/// written back to the host use it.
char SeparatorOf(const char* sHostPath);

/// Returns a path from the phone's root: with a leading '/', without empty, "." and ".." components. Hosts
/// show the result as it is.
std::string FromRoot(std::string_view sPath);

/// Returns a pointer into sPath, to the text after its last '/', or to all of it when there is none.
const char* EntryName(const char* sPath);
