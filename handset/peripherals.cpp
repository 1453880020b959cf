// Camera, audio and Bluetooth. A request has a mode, a command id, two lengths and fields; its response
// begins the same way.
#include "handset/peripherals.h"

#include <algorithm>

#include "handset/packet.h"
#include "handset/state.h"
#include "handset/state_commands.h"
#include "handset/unsolicited.h"

namespace handset {
namespace {

constexpr uint16_t kDone = 0;
constexpr uint16_t kRefused = 2;
constexpr uint16_t kFtmLogCode = 0x117C;
constexpr std::chrono::milliseconds kChipTime(5);

enum CameraCommand : uint16_t {
    kCameraStart = 0,
    kCameraStop = 1,
    kPreviewStart = 4,
    kPreviewStop = 5,
    kTakePicture = 6,
    kReadPicture = 7,
    kCameraInfo = 9,
};
enum AudioCommand : uint16_t { kRecordingStart = 7, kReadRecording = 8, kRecordingStop = 9 };

uint16_t TakeHead(RequestReader& in, AnswerWriter& answer) {
    uint16_t id = 0;
    uint16_t first = 0;
    uint16_t second = 0;
    in.Take(id);
    in.Take(first);
    in.Take(second);
    answer.U16(id).U16(first).U16(second);
    return id;
}

/// Appends the offset and size of the requested piece, and the piece; it is shorter at the end of `whole`.
void AnswerPiece(RequestReader& in, AnswerWriter& answer, const Bytes& whole) {
    uint32_t offset = 0;
    uint16_t size = 0;
    in.Take(offset);
    in.Take(size);
    const size_t begin = std::min<size_t>(offset, whole.size());
    const size_t end = std::min<size_t>(begin + size, whole.size());
    answer.U32(offset).U16(static_cast<uint16_t>(end - begin));
    answer.Data({whole.begin() + static_cast<long>(begin), whole.begin() + static_cast<long>(end)});
}

uint16_t SwitchCamera(Peripherals& phone, bool on) {
    const uint16_t status = !on ? kDone : phone.isCameraOn ? kRefused : phone.cameraStart;
    phone.isCameraOn = on ? phone.isCameraOn || status == kDone : false;
    phone.isPreviewing = phone.isPreviewing && phone.isCameraOn;
    return status;
}

uint16_t TakePicture(Peripherals& phone, AnswerWriter& answer) {
    phone.isPictureTaken = !phone.isPreviewing;
    answer.U32(phone.isPictureTaken ? static_cast<uint32_t>(phone.picture.size()) : 0);
    return phone.isPictureTaken ? kDone : kRefused;
}

Bytes EventOf(const Bytes& command, const Bytes& version) {
    constexpr uint8_t kEvent = 4;
    constexpr uint8_t kCommandComplete = 0x0E;
    const Bytes readVersion = {1, 0x01, 0x10, 0};
    const Bytes values = command == readVersion ? version : Bytes{};
    return AnswerWriter({kEvent, kCommandComplete})
        .U8(static_cast<uint8_t>(4 + values.size()))
        .U8(1)
        .Data({command.at(1), command.at(2)})
        .U8(0)
        .Data(values)
        .Result();
}

} // namespace

bool AnswerCamera(State& state, RequestReader& in, AnswerWriter& answer) {
    Peripherals& phone = state.peripherals;
    const uint16_t id = TakeHead(in, answer);
    uint16_t status = phone.isCameraOn ? kDone : kRefused;
    if (id == kCameraStart || id == kCameraStop) {
        status = SwitchCamera(phone, id == kCameraStart);
    } else if (id == kPreviewStart || id == kPreviewStop) {
        phone.isPreviewing = phone.isCameraOn && id == kPreviewStart;
    } else if (id == kTakePicture && phone.isCameraOn) {
        status = TakePicture(phone, answer);
    } else if (id == kReadPicture) {
        AnswerPiece(in, answer, phone.picture);
        status = phone.isPictureTaken ? kDone : kRefused;
    } else if (id == kCameraInfo) {
        answer.U16(1).U16(90).U8(2).U16(640).U16(480);
    }
    answer.U16(status);
    return in.Good();
}

bool AnswerAudio(State& state, RequestReader& in, AnswerWriter& answer) {
    Peripherals& phone = state.peripherals;
    const uint16_t id = TakeHead(in, answer);
    if (id == kReadRecording && phone.isRecording) {
        AnswerPiece(in, answer, phone.recording);
        return in.Good();
    }
    if (id == kRecordingStart || id == kRecordingStop)
        phone.isRecording = id == kRecordingStart;
    answer.U16(id == kReadRecording ? kRefused : kDone);
    return in.Good();
}

bool AnswerBluetooth(State& state, RequestReader& in, AnswerWriter& answer) {
    constexpr size_t kShortestCommand = 4;
    Peripherals& phone = state.peripherals;
    TakeHead(in, answer);
    Bytes command;
    in.Take(command);
    if (!in.Good() || command.size() < kShortestCommand)
        return false;
    phone.hciCommands.push_back(command);
    answer.Data(command);
    if (state.radio.logTypes.contains(Peripherals::kBluetoothLogType) &&
        state.traffic.SendsLog(kFtmLogCode)) {
        AnswerWriter record;
        record.U16(Peripherals::kBluetoothLogType).Data(EventOf(command, phone.version));
        state.delayed.Add(kChipTime, LogPacket(kFtmLogCode, 0, record.Result()));
    }
    return true;
}

} // namespace handset
