// The figures of the phone's file system.
#pragma once

#include "qdiag/facts.h"
#include "qdiag/phone.h"

namespace tools::qdiag {

/// AddSpace adds the sizes in bytes and the numbers of files that the phone reports. With `withKind`, the
/// file system's id and type come first.
void AddSpace(const Phone& phone, Facts& facts, bool withKind = false);

} // namespace tools::qdiag
