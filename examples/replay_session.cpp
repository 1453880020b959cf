// Records a session with the phone in a text log, then repeats it from the log, without the phone.
//
//     $ replay_session 1 session.log
//     phone: software of Mar 14 2008, serial number 80345678
//     log:   software of Mar 14 2008, serial number 80345678
//
//     $ replay_session 1 /nowhere/session.log
//     phone: software of Mar 14 2008, serial number 80345678
//     /nowhere/session.log cannot be read
//     [exit status 1]
#include <quillet.h>

#include <cstdio>
#include <cstdlib>

namespace {

/// The session: two requests. It does not know where their responses come from.
bool Identify(Diag_FTM& phone, const char* source) {
    QLIB_PhoneResp_Version version;
    DWORD serial = 0;
    if (!phone.DIAG_VERNO_F(&version) || !phone.DIAG_READ_ESN_F(serial)) {
        std::fprintf(stderr, "%s no usable response\n", source);
        return false;
    }
    std::printf("%s software of %.11s, serial number %08X\n", source, version.sCompileDate,
                static_cast<unsigned>(serial));
    return true;
}

bool Record(int port, const char* file) {
    Diag_FTM phone(port);
    phone.ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 1000); // a busy phone needs more than the usual 80 ms
    if (!phone.IsPhoneConnected()) { // before the log starts: it is not part of the session
        std::fprintf(stderr, "%s\n", PortErrorText(phone.GetPortError(), "the port").c_str());
        return false;
    }
    phone.StartLogging(file);
    const bool isDone = Identify(phone, "phone:");
    phone.StopLogging();
    return isDone;
}

bool Replay(const char* file) {
    constexpr unsigned char kWithoutFcs = 0;
    Diag_FTM recording(0); // its port is never opened
    if (!recording.StartLogFilePlaybackMode(file, kWithoutFcs)) {
        std::fprintf(stderr, "%s cannot be read\n", file);
        return false;
    }
    return Identify(recording, "log:  ");
}

} // namespace

int main(int count, char** words) {
    const int port = count == 3 ? std::atoi(words[1]) : 0;
    if (port <= 0) {
        std::fprintf(stderr, "usage: replay_session PORT LOG_FILE\n");
        return 2;
    }
    return Record(port, words[2]) && Replay(words[2]) ? 0 : 1;
}
