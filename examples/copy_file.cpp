// Copies a file from the phone and shows its progress. Ctrl-C ends the copy, and so does a limit on its size.
//
//     $ copy_file 1 shared/pictures/photo1.jpg photo1.jpg
//     25 %
//     50 %
//     75 %
//     100 %
//     copied 307200 bytes
//
//     $ copy_file 1 shared/pictures/photo1.jpg photo1.jpg 100000
//     25 %
//     stopped before the end
//     [exit status 1]
//
//     $ copy_file 1 shared/none.jpg none.jpg
//     shared/none.jpg: the phone refused it: no such file or folder (2)
//     [exit status 1]
#include <quillet.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

volatile std::sig_atomic_t isInterrupted = 0;

struct Copy {
    Diag_FTM& phone;
    DWORD size;  // of the file
    DWORD limit; // bytes at which the copy is ended
    unsigned quarters = 0;
    bool isAborted = false;
};

/// Runs after each block, on the thread that copies.
unsigned char OnBlock(char* const, char* const, int, int, DWORD done, DWORD, void* data) {
    Copy& copy = *static_cast<Copy*>(data);
    const auto quarters = static_cast<unsigned>(uint64_t{done} * 4 / (copy.size != 0 ? copy.size : 1));
    if (quarters > copy.quarters)
        std::printf("%u %%\n", quarters * 25);
    copy.quarters = quarters;
    if (done < copy.size && (isInterrupted != 0 || done >= copy.limit)) {
        copy.isAborted = true; // EFS2_DIAG_READ_FILE does not report it
        copy.phone.EFS2_DIAG_ABORT();
    }
    return 0;
}

int Fail(Diag_FTM& phone, const char* file) {
    std::fprintf(stderr, "%s: %s\n", file, EFS2_FailureText(phone.EFS2_LastFailure()).c_str());
    return 1;
}

int CopyFile(Diag_FTM& phone, const char* from, const char* to, DWORD limit) {
    DWORD error = 0;
    DWORD size = 0;
    DWORD mode = 0;
    DWORD links = 0;
    DWORD times[3] = {};
    if (!phone.EFS2_DIAG_STAT(from, error, mode, size, links, times[0], times[1], times[2]) || error != 0)
        return Fail(phone, from);
    Copy copy{phone, size, limit};
    phone.ConfigureEfsCallbacks(&copy, OnBlock, nullptr);
    const bool isDone = phone.EFS2_DIAG_READ_FILE(to, from);
    phone.ConfigureEfsCallbacks(nullptr, nullptr, nullptr);
    if (!isDone)
        return Fail(phone, from);
    if (copy.isAborted) {
        std::fprintf(stderr, "stopped before the end\n");
        return 1;
    }
    std::printf("copied %u bytes\n", static_cast<unsigned>(size));
    return 0;
}

} // namespace

int main(int count, char** words) {
    const int port = count > 1 ? std::atoi(words[1]) : 0;
    if (port <= 0 || count < 4 || count > 5) {
        std::fprintf(stderr, "usage: copy_file PORT PHONE_FILE LOCAL_FILE [LIMIT]\n");
        return 2;
    }
    std::signal(SIGINT, [](int) { isInterrupted = 1; });
    Diag_FTM phone(port);
    phone.ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 1000); // a busy phone needs more than the usual 80 ms
    if (!phone.IsPhoneConnected()) {
        std::fprintf(stderr, "%s\n", PortErrorText(phone.GetPortError(), "the port").c_str());
        return 1;
    }
    const auto limit = count == 5 ? static_cast<DWORD>(std::strtoul(words[4], nullptr, 10)) : 0xFFFFFFFF;
    return CopyFile(phone, words[2], words[3], limit);
}
