// The replay command: prints a recorded session.
#include <cstdio>

#include "common/command_line.h"
#include "common/library_name.h"
#include "common/local_path.h"
#include "common/text.h"
#include "qdiag/commands.h"
#include "qdiag/packet_text.h"

namespace tools::qdiag {
namespace {

struct Replay {
    PacketText text;
    bool withBytes;
    size_t count = 0;
};

void OnPacket(unsigned short length, unsigned char* packet, void* data) {
    auto& replay = *static_cast<Replay*>(data);
    char number[24];
    std::snprintf(number, sizeof number, "%6zu  ", ++replay.count);
    replay.text.Print(number, {packet, length}, replay.withBytes);
}

} // namespace

void ReplayCommand(const Job& job) {
    const std::string& path = job.arguments[0];
    Replay replay{{}, job.Has("--hex")};
    // Not a Diag_FTM, which may start a text log of its own and overwrite the file to be read.
    DiagConnection connection(0);
    connection.ConfigureAsyncMessageCallBack(&replay, &OnPacket);
    LogPlayback playback(connection);
    constexpr unsigned char kKeepFcs = 1;
    if (!playback.StartLogFilePlaybackMode(LibraryName(LocalPath(path)).c_str(), kKeepFcs))
        throw Failure("the file " + Quoted(path) + " cannot be read");
    playback.StopLogFilePlaybackMode();
    if (replay.count == 0)
        throw Failure("no packet from a phone is recorded in " + Quoted(path));
}

} // namespace tools::qdiag
