// Conversion between a tty's line settings and the records of the serial interface.
#include "platform/posix/line_settings.h"

#include <cerrno>
#include <cstddef>
#include <iterator>

namespace {

struct Rate {
    DWORD iBaud;
    speed_t iSpeed;
};

constexpr Rate kRates[] = {
    {50, B50},           {75, B75},           {110, B110},         {134, B134},         {150, B150},
    {200, B200},         {300, B300},         {600, B600},         {1200, B1200},       {1800, B1800},
    {2400, B2400},       {4800, B4800},       {9600, B9600},       {19200, B19200},     {38400, B38400},
    {57600, B57600},     {115200, B115200},   {230400, B230400},   {460800, B460800},   {500000, B500000},
    {576000, B576000},   {921600, B921600},   {1000000, B1000000}, {1152000, B1152000}, {1500000, B1500000},
    {2000000, B2000000}, {2500000, B2500000}, {3000000, B3000000}, {3500000, B3500000}, {4000000, B4000000},
};

// Indexed by ByteSize - 5, Parity (none, odd, even, mark, space) and StopBits (one, one and a half, two).
constexpr tcflag_t kByteSizes[] = {CS5, CS6, CS7, CS8};
constexpr tcflag_t kParities[] = {0, PARENB | PARODD, PARENB, PARENB | PARODD | CMSPAR, PARENB | CMSPAR};
constexpr tcflag_t kParityBits = PARENB | PARODD | CMSPAR;
constexpr BYTE kOneStopBit = 0;
constexpr BYTE kTwoStopBits = 2;

template <size_t kCount>
BYTE IndexOf(const tcflag_t (&aFlags)[kCount], tcflag_t iFlag) {
    BYTE iIndex = 0;
    while (iIndex < kCount - 1 && aFlags[iIndex] != iFlag)
        ++iIndex;
    return iIndex;
}

} // namespace

void MakeRaw(termios& settings) {
    cfmakeraw(&settings);
    settings.c_iflag &= ~tcflag_t{IXOFF | IXANY | INPCK};
    settings.c_cflag &= ~tcflag_t{CRTSCTS};
    settings.c_cflag |= CLOCAL | CREAD;
    // VMIN 1 distinguishes "no bytes" (EAGAIN) from the end of a hung-up tty. Reads do not block because the
    // descriptor is non-blocking.
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
}

bool PutLineState(const DCB& state, termios& settings) {
    if (state.ByteSize < 5 || state.ByteSize > 8 || state.Parity >= std::size(kParities))
        return false;
    if (state.StopBits != kOneStopBit && state.StopBits != kTwoStopBits)
        return false;
    settings.c_cflag &= ~tcflag_t{CSIZE | kParityBits | CSTOPB};
    settings.c_cflag |= kByteSizes[state.ByteSize - 5] | kParities[state.Parity];
    if (state.StopBits == kTwoStopBits)
        settings.c_cflag |= CSTOPB;
    for (const Rate& rate : kRates) {
        if (rate.iBaud == state.BaudRate)
            return cfsetspeed(&settings, rate.iSpeed) == 0;
    }
    return false;
}

void TakeLineState(const termios& settings, DCB& state) {
    state.BaudRate = 0;
    for (const Rate& rate : kRates) {
        if (rate.iSpeed == cfgetospeed(&settings))
            state.BaudRate = rate.iBaud;
    }
    state.ByteSize = BYTE(5 + IndexOf(kByteSizes, settings.c_cflag & CSIZE));
    state.Parity = settings.c_cflag & PARENB ? IndexOf(kParities, settings.c_cflag & kParityBits) : BYTE{0};
    state.StopBits = settings.c_cflag & CSTOPB ? kTwoStopBits : kOneStopBit;
}

int ApplyLineState(int fdTty, const termios& settings) {
    if (tcsetattr(fdTty, TCSANOW, &settings) == 0)
        return 0;
    // The C library reports EINVAL when the tty did not keep every setting, although it kept the others.
    termios kept{};
    if (errno != EINVAL || tcgetattr(fdTty, &kept) != 0)
        return -1;
    if (cfgetospeed(&kept) == cfgetospeed(&settings))
        return 0;
    errno = EINVAL;
    return -1;
}
