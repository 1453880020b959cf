#include "qdiag/archive/entry.h"

#include <clocale>

namespace tools::qdiag {

void UsePlainNames() {
    std::setlocale(LC_CTYPE, "C.UTF-8");
}

} // namespace tools::qdiag
