// The commands that need libarchive, in a qdiag that was built without it.
#include "qdiag/commands.h"

namespace tools::qdiag {
namespace {

[[noreturn]] void Refuse() {
    throw Failure("this qdiag was built without libarchive and cannot read or write archives");
}

} // namespace

void EfsBackupCommand(const Job&) {
    Refuse();
}

void EfsRestoreCommand(const Job&) {
    Refuse();
}

} // namespace tools::qdiag
