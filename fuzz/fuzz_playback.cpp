// Playback of a text log with arbitrary content.
#include <fstream>

#include "input.h"
#include "qlib/diag_ftm.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize) {
    static Diag_FTM diag(nullptr, 1);
    Input input(pData, iSize);
    const unsigned iFlags = input.Byte();
    const auto text = input.Bytes();
    std::ofstream("fuzz-log.txt", std::ios::binary)
        .write(reinterpret_cast<const char*>(text.data()), static_cast<std::streamsize>(text.size()));
    diag.DIAG_SetPhoneLoggingState((iFlags & 2) != 0);
    Require(diag.StartLogFilePlaybackMode("fuzz-log.txt", iFlags & 1));
    diag.EFS2_DIAG_ENUM_DIR("folder");
    const size_t iCapacity = iFlags >> 2;
    const auto pResponse = Area<unsigned char>(iCapacity);
    auto iLength = static_cast<unsigned short>(iCapacity);
    constexpr unsigned char aRequest[] = {0};
    diag.SendSync(sizeof aRequest, aRequest, &iLength, pResponse.get(), 0, 0, 0);
    Require(iLength <= kMaxPacketSize);
    diag.DumpAsyncMessageToTextLog(LOG_ASYNC, true, true, true);
    diag.StopLogFilePlaybackMode();
    return 0;
}
