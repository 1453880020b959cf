// Measures bit errors on a GSM traffic channel, from the start of the test session to its end. The phone is
// connected to a test instrument that sends on the channel.
//
// The simulated handset takes part in the session; the reports on the traffic are given to it.
//
//     handset> misbehave replace prefix=4B0B0200 packet=4B0B0200 times=-1
//     $ gsm_bit_errors 1 10 62
//     level 48, quality 1
//     level 48, quality 1
//     level 48, quality 1
//     handset> log 0x117C 05 10 06 04 01
//     handset> log 0x117C 05 10 07 30 01
//
//     $ gsm_bit_errors 1 7 62
//     setting the RF mode failed
//     [exit status 1]
#include <quillet.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr DWORD kWait_ms = 10000; // for each confirmation and each measurement
constexpr int kMeasurements = 3;

bool Check(bool isDone, const char* step) {
    if (!isDone)
        std::fprintf(stderr, "%s failed\n", step);
    return isDone;
}

bool Measure(Diag_FTM& phone) {
    constexpr int kTries = 100;
    int good = 0;
    for (int i = 0; i < kTries && good < kMeasurements; ++i) {
        unsigned char level = 0;
        unsigned char quality = 0; // 0 to 7: the classes of bit-error rates
        if (!Check(phone.FTM_GSM_BER_GetRxMetrics(level, quality), "waiting for a measurement"))
            return false;
        if (!phone.FTM_GSM_BER_IsTrafficValid())
            continue; // the channel is not up yet
        std::printf("level %u, quality %u\n", level, quality);
        ++good;
    }
    return Check(good == kMeasurements, "receiving valid traffic");
}

bool Run(Diag_FTM& phone, unsigned short channel) {
    constexpr unsigned char kBand = 0;
    constexpr unsigned char kSlot = 3;
    constexpr FTM_GSM_BER_LoopbackType_Enum kLoopback{1};
    constexpr FTM_GSM_BER_Channel_Modes_Enum kSpeech{1};
    if (!Check(phone.FTM_GSM_BER_StartSession(kWait_ms), "starting the session") ||
        !Check(phone.FTM_GSM_BER_AssignBCCH(channel, kBand), "finding the broadcast channel") ||
        !Check(phone.FTM_GSM_BER_AssignTraffic(kLoopback, kSlot, kSpeech), "assigning the traffic channel"))
        return false;
    const bool isMeasured = Measure(phone);
    return Check(phone.FTM_GSM_BER_ReleaseTCH(), "releasing the traffic channel") && isMeasured;
}

} // namespace

int main(int count, char** words) {
    const int port = count == 4 ? std::atoi(words[1]) : 0;
    if (port <= 0) {
        std::fprintf(stderr, "usage: gsm_bit_errors PORT RF_MODE CHANNEL\n");
        return 2;
    }
    Diag_FTM phone(port);
    phone.ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 1000); // a busy phone needs more than the usual 80 ms
    if (!phone.IsPhoneConnected()) {
        std::fprintf(stderr, "%s\n", PortErrorText(phone.GetPortError(), "the port").c_str());
        return 1;
    }
    if (!Check(phone.FTM_SET_MODE(FTM_RF_Mode_Enum{std::atoi(words[2])}), "setting the RF mode"))
        return 1;
    const bool isMeasured = Run(phone, static_cast<unsigned short>(std::atoi(words[3])));
    // Also after a start that failed: the phone may have started.
    return Check(phone.FTM_GSM_BER_StopSession(), "ending the session") && isMeasured ? 0 : 1;
}
