// What the program shows when it is called without a command.
#pragma once

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// Demonstrate lists folders of the handset and copies a file from it, and prints what happens. It never
/// writes to an attached handset. When none is attached it starts a simulated one, copies a file to that as
/// well, reads it back, compares and deletes it. It leaves nothing behind. Throws Failure as the commands do.
void Demonstrate(Session& session);

} // namespace tools::wfxhost
