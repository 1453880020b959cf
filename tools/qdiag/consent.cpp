#include "qdiag/consent.h"

#include <cstdio>
#include <iostream>
#include <string>

#include "common/failure.h"

namespace tools::qdiag {

void RequireConsent() {
    std::printf("Write them to the phone? [y/N] ");
    std::fflush(stdout);
    std::string answer;
    std::getline(std::cin, answer);
    if (answer != "y" && answer != "Y" && answer != "yes")
        throw Failure("not confirmed: nothing was written");
}

} // namespace tools::qdiag
