// The commands without a family: loopback, version, mode change, file attributes.
#include "handset/commands.h"

#include "handset/file_system.h"
#include "handset/packet.h"

namespace handset {
namespace {

constexpr uint8_t kVersion = 0x00;
constexpr uint8_t kModeChange = 0x44;
constexpr uint8_t kAttributes = 0x59;
constexpr uint8_t kLoopback = 0x7B;

constexpr uint8_t kGetAttributes = 7;
constexpr uint8_t kSetAttributes = 8;

/// A text in a field of fixed width, padded with spaces.
AnswerWriter& Field(AnswerWriter& answer, const std::string& text, size_t width) {
    for (size_t i = 0; i < width; ++i)
        answer.U8(static_cast<uint8_t>(i < text.size() ? text[i] : ' '));
    return answer;
}

Bytes VersionAnswer() {
    AnswerWriter answer({kVersion});
    Field(answer, "Mar 14 2008", 11);
    Field(answer, "09:26:53", 8);
    Field(answer, "Mar 10 2008", 11);
    Field(answer, "18:00:00", 8);
    Field(answer, "SIMULATE", 8);
    return answer.U8(0).U8(6).U8(1).U16(0x0101).U8(0).U8(2).Result();
}

/// One byte with the length of the path, zero included, precedes the path.
Bytes AttributesAnswer(const Bytes& request, FileSystem& files) {
    RequestReader in(request, 1);
    uint8_t operation = 0;
    uint8_t length = 0;
    std::string path;
    in.Take(operation);
    in.Take(length);
    in.Take(path);
    if (in.Good() && operation != kGetAttributes && operation != kSetAttributes)
        return ProtocolErrorAnswer(static_cast<uint8_t>(ProtocolError::BadCommand), request);
    uint32_t first = 0;
    uint32_t second = 0;
    uint32_t third = 0;
    if (operation == kSetAttributes) {
        in.Take(first);
        in.Take(second);
    }
    if (!in.Good() || length != path.size() + 1)
        return ProtocolErrorAnswer(static_cast<uint8_t>(ProtocolError::BadLength), request);
    const Errnum errnum = operation == kSetAttributes ? files.SetAttributes(path, first, second)
                                                      : files.Attributes(path, first, second, third);
    AnswerWriter answer({kAttributes, operation, static_cast<uint8_t>(errnum)});
    if (operation == kGetAttributes)
        answer.U32(first).U32(second).U32(third);
    return answer.Result();
}

} // namespace

Bytes ProtocolErrorAnswer(uint8_t code, const Bytes& request) {
    return AnswerWriter({code}).Data(request).Result();
}

Bytes AnswerTo(const Bytes& request, FileSystem& files, State& phone) {
    if (BeginsWith(request, {kSubsystemCommand, kFileSubsystem}) || request == Bytes{kSubsystemCommand})
        return FileSystemAnswer(request, files);
    switch (request.front()) {
        case kVersion:
            return VersionAnswer();
        case kLoopback:
            return request;
        case kModeChange:
            return {kModeChange, 1};
        case kAttributes:
            return AttributesAnswer(request, files);
        default:
            return StateAnswer(request, phone);
    }
}

} // namespace handset
