// The terminal on Linux.
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>

#include "common/terminal.h"

namespace tools {

int TerminalWidth() {
    if (!isatty(STDOUT_FILENO))
        return 0;
    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col ? size.ws_col : 80;
}

void LetClosedPipesFail() {
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace tools
