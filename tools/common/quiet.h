// Whether the program prints only results and failures (--quiet).
#pragma once

namespace tools {

/// Called once, before the command runs.
void SetQuiet(bool isQuiet);
bool IsQuiet();

} // namespace tools
