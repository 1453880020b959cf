// The table of the simulated handset's general commands, and the commands that use only its service state.
#include "handset/state_commands.h"

#include <algorithm>

#include "handset/commands.h"
#include "handset/packet.h"
#include "handset/state.h"

namespace handset {
namespace {

using Handler = bool (*)(State& phone, RequestReader& in, AnswerWriter& answer);

/// Reads a field into `kept`. No change if the request is too short.
bool Keep(RequestReader& in, uint16_t& kept) {
    uint16_t value = 0;
    in.Take(value);
    if (in.Good())
        kept = value;
    return in.Good();
}

bool AnswerNothing(State&, RequestReader&, AnswerWriter&) {
    return true;
}

bool AnswerBuildId(State&, RequestReader&, AnswerWriter& answer) {
    answer.U8(0).U16(0).U32(0x000200E1).U32(0x0FF0).Text("QSIM-1.2.3").Text("SIM-100");
    return true;
}

bool AnswerStatus(State& phone, RequestReader&, AnswerWriter& answer) {
    answer.U8(phone.service.status);
    return true;
}

bool AnswerErrorRead(State& phone, RequestReader&, AnswerWriter& answer) {
    answer.Data(phone.service.errorLog);
    return true;
}

bool AnswerErrorClear(State& phone, RequestReader& in, AnswerWriter& answer) {
    uint8_t record = 0;
    in.Take(record);
    if (in.Good())
        phone.service.errorLog.assign(phone.service.errorLog.size(), 0);
    answer.U8(record);
    return in.Good();
}

bool AnswerControl(State& phone, RequestReader& in, AnswerWriter& answer) {
    const bool isWhole = Keep(in, phone.service.mode);
    answer.U16(phone.service.mode);
    return isWhole;
}

bool AnswerServiceCode(State& phone, RequestReader& in, AnswerWriter& answer) {
    Bytes code;
    in.Take(code, phone.service.serviceCode.size());
    if (!in.Good())
        return false;
    phone.service.isUnlocked = std::equal(code.begin(), code.end(), phone.service.serviceCode.begin(),
                                          phone.service.serviceCode.end());
    answer.U8(phone.service.isUnlocked ? 1 : 0);
    return true;
}

bool AnswerFreeze(State& phone, RequestReader&, AnswerWriter&) {
    phone.service.isFrozen = true;
    return true;
}

bool AnswerDownloadMode(State& phone, RequestReader&, AnswerWriter&) {
    phone.service.isDownloading = true;
    return true;
}

/// The response to the download-mode greeting has a command code of its own.
bool AnswerGreeting(State&, RequestReader&, AnswerWriter& answer) {
    const std::string name = "QCOM fast download protocol targ";
    answer = AnswerWriter({0x02});
    answer.Data({name.begin(), name.end()}).U8(3).U8(2).U32(0).U8(1);
    return true;
}

bool AnswerSwitches(State& phone, RequestReader& in, AnswerWriter& answer) {
    const bool isWhole = Keep(in, phone.service.switches);
    answer.U16(phone.service.switches);
    return isWhole;
}

bool AnswerKey(State& phone, RequestReader& in, AnswerWriter& answer) {
    uint8_t hold = 0;
    uint8_t key = 0;
    in.Take(hold);
    in.Take(key);
    if (in.Good())
        phone.service.keys.emplace_back(key, hold);
    answer.U8(hold).U8(key);
    return in.Good();
}

bool AnswerDisplay(State&, RequestReader&, AnswerWriter& answer) {
    answer.U8(0).U16(320).U16(240).U8(16).U8(1);
    return true;
}

bool AnswerGsmStatus(State& phone, RequestReader&, AnswerWriter& answer) {
    answer.Data(Bytes(5, 0x11)).Data(Bytes(9, 0x22)).Data(Bytes(9, 0x33));
    answer.U16(0x0CE1).U8(phone.service.calledNumber.empty() ? 0 : 2).U8(5).U8(3);
    return true;
}

bool AnswerCallOrigin(State& phone, RequestReader& in, AnswerWriter&) {
    constexpr size_t kDigits = 32;
    uint8_t count = 0;
    Bytes digits;
    in.Take(count);
    in.Take(digits, kDigits);
    if (!in.Good())
        return false;
    digits.resize(std::min<size_t>(count, digits.size()));
    phone.service.calledNumber.assign(digits.begin(), digits.end());
    return true;
}

bool AnswerCallEnd(State& phone, RequestReader&, AnswerWriter&) {
    phone.service.calledNumber.clear();
    return true;
}

/// A general command. Its requests begin with `prefix`.
struct Command {
    Bytes prefix;
    Handler handler;
};

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {.prefix = {0x01, 'Q', 'C', 'O', 'M'}, .handler = AnswerGreeting},
        {.prefix = {0x02}, .handler = AnswerPeek8},
        {.prefix = {0x03}, .handler = AnswerPeek16},
        {.prefix = {0x04}, .handler = AnswerPeek32},
        {.prefix = {0x05}, .handler = AnswerPoke8},
        {.prefix = {0x06}, .handler = AnswerPoke16},
        {.prefix = {0x07}, .handler = AnswerPoke32},
        {.prefix = {0x1F}, .handler = AnswerMessageLevel},
        {.prefix = {0x20}, .handler = AnswerKey},
        {.prefix = {0x26}, .handler = AnswerNvRead},
        {.prefix = {0x27}, .handler = AnswerNvWrite},
        {.prefix = {0x29}, .handler = AnswerControl},
        {.prefix = {0x2A}, .handler = AnswerErrorRead},
        {.prefix = {0x2B}, .handler = AnswerErrorClear},
        {.prefix = {0x2F}, .handler = AnswerSwitches},
        {.prefix = {0x3A}, .handler = AnswerDownloadMode},
        {.prefix = {0x41}, .handler = AnswerServiceCode},
        {.prefix = {0x4B, 0x04, 0x0E, 0x00}, .handler = AnswerStatus},
        {.prefix = {0x4B, 0x08, 0x01, 0x00}, .handler = AnswerGsmStatus},
        {.prefix = {0x4B, 0x08, 0x03, 0x00}, .handler = AnswerCallOrigin},
        {.prefix = {0x4B, 0x08, 0x04, 0x00}, .handler = AnswerCallEnd},
        {.prefix = {0x4B, 0x0B, 0x04, 0x00}, .handler = AnswerBluetooth},
        {.prefix = {0x4B, 0x0B, 0x09, 0x00}, .handler = AnswerFtmLog},
        {.prefix = {0x4B, 0x0B, 0x0D, 0x00}, .handler = AnswerGsmTest},
        {.prefix = {0x4B, 0x0B, 0x0E, 0x00}, .handler = AnswerAudio},
        {.prefix = {0x4B, 0x0B, 0x0F, 0x00}, .handler = AnswerCamera},
        {.prefix = {0x4B, 0x0B, 0x10, 0x00}, .handler = AnswerWcdmaTest},
        {.prefix = {0x4B, 0x0D, 0x12, 0x00}, .handler = AnswerDelayed},
        {.prefix = {0x4B, 0x10, 0x00, 0x00}, .handler = AnswerDisplay},
        {.prefix = {0x4B, 0x30, 0x00, 0x00}, .handler = AnswerNvBatch},
        {.prefix = {0x60}, .handler = AnswerEventControl},
        {.prefix = {0x73, 0x00, 0x00, 0x00}, .handler = AnswerLogMask},
        {.prefix = {0x7C}, .handler = AnswerBuildId},
        {.prefix = {0x7D, 0x04}, .handler = AnswerMessageFilter},
        {.prefix = {0x80, 0x10, 0x02, 0x00}, .handler = AnswerDelayed},
        {.prefix = {0x80, 0x37, 0x00, 0x00}, .handler = AnswerDelayed},
        {.prefix = {0xFF}, .handler = AnswerFreeze},
    };
    return commands;
}

/// The download-mode no-operation, a whole request. Longer requests with this byte are pokes.
const Bytes kDownloadNothing = {0x06};

} // namespace

Bytes StateAnswer(const Bytes& request, State& phone) {
    const auto command = std::find_if(Commands().begin(), Commands().end(), [&](const Command& candidate) {
        return BeginsWith(request, candidate.prefix);
    });
    if (command == Commands().end())
        return ProtocolErrorAnswer(static_cast<uint8_t>(ProtocolError::BadCommand), request);
    RequestReader in(request, command->prefix.size());
    AnswerWriter answer(command->prefix);
    const Handler handler = request == kDownloadNothing ? AnswerNothing : command->handler;
    return handler(phone, in, answer)
               ? answer.Result()
               : ProtocolErrorAnswer(static_cast<uint8_t>(ProtocolError::BadLength), request);
}

} // namespace handset
