// Where links on the phone lead.
#pragma once

#include <string>

class Operation;

/// LinkTarget returns what a link holds, as the phone keeps it; empty for what is no link, and when the phone
/// does not answer.
std::string LinkTarget(Operation& operation, const char* sPhonePath);

/// LinkedFolder returns the folder that a link leads to, as a path from the phone's root with '/' in front;
/// empty when it is no link, or leads to something else. A target from the root is returned as the phone
/// keeps it. One that does not begin with '/' counts from the link's own folder or, when no folder is there,
/// from the root; where neither proves right, the link's own path stands for the folder.
std::string LinkedFolder(Operation& operation, const char* sPhonePath);
