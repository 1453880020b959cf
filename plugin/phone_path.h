// From the host's form of a path to the phone's, and back.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// A host path with its zero is at most this long.
constexpr size_t kMaxPathSize = 1024;

/// IsUsableHostPath: not null, and no longer than kMaxPathSize. Everything below but CopyHostPath and
/// TakeHostPath wants such a path.
bool IsUsableHostPath(const char* sPath);

/// CopyHostPath gives in sPhonePath (kMaxPathSize bytes) the phone path that the library takes: a copy, then
/// ToPhonePath and StripLeadingSeparators. False, with nothing written, when the host path is not usable.
bool CopyHostPath(const char* sHostPath, char* sPhonePath);

/// TakeHostPath does the same and writes the phone path over the host's text, too, where the host lets it.
bool TakeHostPath(char* sHostPath, char* sPhonePath);

/// ToPhonePath makes every backslash a slash and every run of slashes one. A path of at least 3 characters
/// whose second or third one is ':' is a drive path and stays as it is.
void ToPhonePath(char* sPath);

/// StripLeadingSeparators removes all slashes and backslashes from the begin: the root becomes the empty
/// text.
void StripLeadingSeparators(char* sPath);

/// ToHostPath makes every slash the given separator of the host.
void ToHostPath(char* sPath, char cSeparator);

/// SeparatorOf returns the separator that a host path is written with: its first one, or the host's usual one
/// when it has none. A path that is written back to the host uses the separator that came in.
char SeparatorOf(const char* sHostPath);

/// FromRoot returns a path from the phone's root, with '/' in front, without empty, "." and ".." parts: hosts
/// show the path that they are given.
std::string FromRoot(std::string_view sPath);

/// EntryName returns what follows a path's last '/', all of it when there is none; it points into sPath.
const char* EntryName(const char* sPath);
