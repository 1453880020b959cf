// Whether a program is to say nothing but its results and failures (--quiet).
#pragma once

namespace tools {

/// SetQuiet is called once, before the command begins.
void SetQuiet(bool isQuiet);
bool IsQuiet();

} // namespace tools
