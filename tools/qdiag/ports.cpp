// The ports command: lists the serial ports.
#include <cstdio>

#include "qdiag/commands.h"
#include "qdiag/phone.h"

namespace tools::qdiag {

void PortsCommand(const Job&) {
    for (const unsigned short port : AllPorts()) {
        Diag_FTM phone(port);
        const char* state = "cannot be opened";
        if (phone.OpenPort())
            state = phone.IsPhoneConnected() ? "a handset answers" : "no answer";
        std::printf("COM%-4d %s\n", port, state);
        std::fflush(stdout);
    }
}

} // namespace tools::qdiag
