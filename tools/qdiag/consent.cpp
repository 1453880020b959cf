#include "qdiag/consent.h"

#include <cstdio>
#include <iostream>
#include <string>

#include "common/failure.h"

namespace tools::qdiag {

void RequireConsent() {
    std::printf("Write them to the phone? [y/N] ");
    std::fflush(stdout);
    std::string reply;
    std::getline(std::cin, reply);
    if (reply != "y" && reply != "Y" && reply != "yes")
        throw Failure("not confirmed: nothing was written");
}

} // namespace tools::qdiag
