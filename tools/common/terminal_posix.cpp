// The terminal on Linux.
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>

#include "common/terminal.h"

namespace tools {

std::vector<std::string> CommandLineWords(int count, char** words) {
    return {words + (count > 0 ? 1 : 0), words + count};
}

void ShowUtf8() {} // that is the terminal's own setting

int TerminalWidth() {
    if (!isatty(STDOUT_FILENO))
        return 0;
    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col ? size.ws_col : 80;
}

void LetWritesFail() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

} // namespace tools
