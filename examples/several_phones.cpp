// Works with several phones at the same time: one connection and one thread for each.
//
//     $ several_phones 1 2 50
//     COM1: serial number 80345678, software QSIM-1.2.3
//     COM2: serial number 80345678, software QSIM-1.2.3
//     COM50: the port is gone
//     [exit status 1]
#include <quillet.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

struct Work {
    int port = 0;
    std::string result;
    bool isDone = false;
    std::thread thread;
};

/// Uses a connection of its own, so that it needs no lock.
void Identify(Work& work) {
    Diag_FTM phone(work.port);
    phone.ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 1000); // a busy phone needs more than the usual 80 ms
    if (!phone.IsPhoneConnected()) {
        work.result = PortErrorText(phone.GetPortError(), "the port");
        return;
    }
    DWORD serial = 0;
    DWORD chip = 0;
    DWORD model = 0;
    char software[PhoneIdentity::kBuildTextSize] = {};
    char name[PhoneIdentity::kBuildTextSize] = {};
    if (!phone.DIAG_READ_ESN_F(serial) || !phone.DIAG_EXT_BUILD_ID_F(chip, model, software, name)) {
        work.result = "no usable response";
        return;
    }
    char text[600];
    std::snprintf(text, sizeof text, "serial number %08X, software %s", static_cast<unsigned>(serial),
                  software);
    work.result = text;
    work.isDone = true;
}

} // namespace

int main(int count, char** words) {
    if (count < 2) {
        std::fprintf(stderr, "usage: several_phones PORT...\n");
        return 2;
    }
    std::vector<Work> works(static_cast<size_t>(count - 1));
    for (size_t i = 0; i < works.size(); ++i) {
        works[i].port = std::atoi(words[i + 1]);
        works[i].thread = std::thread(Identify, std::ref(works[i]));
    }
    int status = 0;
    for (Work& work : works) {
        work.thread.join();
        std::printf("COM%d: %s\n", work.port, work.result.c_str());
        status = work.isDone ? status : 1;
    }
    return status;
}
