// What the program shows when it is called without a command.
#pragma once

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// Demonstrate lists folders of the handset, copies a file from it and one to it, reads that back, compares
/// and deletes it, and tells on standard output what happened. Without an attached handset it starts a
/// simulated one. It touches no file that was on the phone before, and leaves nothing behind there or here.
/// Throws Failure as the commands do.
void Demonstrate(Session& session);

} // namespace tools::wfxhost
