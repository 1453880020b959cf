// The question before something is written to the phone.
#pragma once

namespace tools::qdiag {

/// Asks on standard output whether to write, and reads the answer from standard input. Throws Failure unless
/// it is a yes.
void RequireConsent();

} // namespace tools::qdiag
