// The demonstration that runs when there is no command.
#pragma once

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// Lists folders of the handset, copies a file from it, and prints what happens. It never writes to an
/// attached handset. If none is attached, it starts a simulated one, also copies a file to that, reads it
/// back, compares and deletes it. Nothing is left behind. Throws Failure as the commands do.
void Demonstrate(Session& session);

} // namespace tools::wfxhost
