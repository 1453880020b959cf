// Sets the radio to a channel, switches the transmitter on, and reads the level that the receiver measures.
//
// The simulated handset has no radio, so it is told what to answer.
//
//     handset> misbehave replace prefix=4B0B01003500 packet=4B0B010035002C01 times=-1
//     handset> misbehave replace prefix=4B0B01001000 packet=4B0B0100100001 times=-1
//     handset> misbehave replace prefix=4B0B0100 packet=4B0B0100 times=-1
//     $ radio_level 1 9 384
//     RF mode 9, channel 384: level 300
//
//     $ radio_level 1 7 384
//     setting the RF mode failed
//     [exit status 1]
#include <quillet.h>

#include <cstdio>
#include <cstdlib>

namespace {

bool Check(bool isDone, const char* step) {
    if (!isDone)
        std::fprintf(stderr, "%s failed\n", step);
    return isDone;
}

/// Reads the level as soon as the synthesizers are locked.
bool ReadLevel(Diag_FTM& phone, unsigned short& level) {
    constexpr int kTries = 100;
    unsigned char isLocked = 0;
    for (int i = 0; i < kTries && isLocked == 0; ++i)
        if (!Check(phone.FTM_GET_SYNTH_STATE(isLocked), "reading the synthesizers' state"))
            return false;
    return Check(isLocked != 0, "locking the synthesizers") &&
           Check(phone.FTM_GET_RX_AGC(level), "reading the level");
}

bool Measure(Diag_FTM& phone, int mode, unsigned short channel, unsigned short& level) {
    if (!Check(phone.FTM_SET_MODE(FTM_RF_Mode_Enum{mode}), "setting the RF mode") ||
        !Check(phone.FTM_SET_CHAN(channel), "setting the channel") ||
        !Check(phone.FTM_SET_TX_ON(), "switching the transmitter on"))
        return false;
    const bool isRead = ReadLevel(phone, level);
    return Check(phone.FTM_SET_TX_OFF(), "switching the transmitter off") && isRead;
}

} // namespace

int main(int count, char** words) {
    const int port = count == 4 ? std::atoi(words[1]) : 0;
    if (port <= 0) {
        std::fprintf(stderr, "usage: radio_level PORT RF_MODE CHANNEL\n");
        return 2;
    }
    const int mode = std::atoi(words[2]);
    const auto channel = static_cast<unsigned short>(std::atoi(words[3]));
    Diag_FTM phone(port);
    phone.ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 1000); // a busy phone needs more than the usual 80 ms
    if (!phone.IsPhoneConnected()) {
        std::fprintf(stderr, "%s\n", PortErrorText(phone.GetPortError(), "the port").c_str());
        return 1;
    }
    unsigned short level = 0;
    if (!Measure(phone, mode, channel, level))
        return 1;
    std::printf("RF mode %d, channel %u: level %u\n", mode, channel, level); // in the phone's own unit
    return 0;
}
