// The targets of links on the phone.
#pragma once

#include <string>

class Operation;

/// Returns the target of a link as the phone stores it. Empty when the path is not a link and when the phone
/// does not answer.
std::string LinkTarget(Operation& operation, const char* sPhonePath);

/// Returns the folder that a link leads to, as a path from the phone's root with a leading '/'. Empty when
/// the path is not a link or leads to something else. An absolute target is returned as the phone stores it.
/// A relative one is tried from the link's own folder, then from the root; if no folder is found there, the
/// link's own path is returned.
std::string LinkedFolder(Operation& operation, const char* sPhonePath);
