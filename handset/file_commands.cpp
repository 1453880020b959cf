// The EFS2 commands of the simulated handset: one handler each, with the fields of its request as arguments,
// in one table.
#include <algorithm>
#include <functional>
#include <tuple>

#include "handset/commands.h"
#include "handset/file_system.h"
#include "handset/packet.h"

namespace handset {
namespace {

constexpr size_t kHeaderSize = 4;
constexpr uint32_t kMaxReadSize = 4000; // a response must fit in a frame
constexpr uint32_t kFileSystemId = 0x51E5;
constexpr uint32_t kFileSystemType = 0x32534645; // "EFS2"

uint32_t Number(Errnum errnum) {
    return static_cast<uint32_t>(errnum);
}

// --- Files ---------------------------------------------------------------------------------------------

void Open(FileSystem& files, AnswerWriter& answer, uint32_t flags, uint32_t mode, const std::string& path) {
    int32_t descriptor = -1;
    const Errnum errnum = files.Open(path, flags, mode, descriptor);
    answer.U32(static_cast<uint32_t>(descriptor)).U32(Number(errnum));
}

void Close(FileSystem& files, AnswerWriter& answer, int32_t descriptor) {
    answer.U32(Number(files.Close(descriptor)));
}

void Read(FileSystem& files, AnswerWriter& answer, int32_t descriptor, uint32_t count, uint32_t offset) {
    Bytes data;
    const Errnum errnum = files.Read(descriptor, std::min(count, kMaxReadSize), offset, data);
    answer.U32(static_cast<uint32_t>(descriptor)).U32(offset).U32(static_cast<uint32_t>(data.size()));
    answer.U32(Number(errnum)).Data(data);
}

void Write(FileSystem& files, AnswerWriter& answer, int32_t descriptor, uint32_t offset, const Bytes& data) {
    uint32_t written = 0;
    const Errnum errnum = files.Write(descriptor, offset, data, written);
    answer.U32(static_cast<uint32_t>(descriptor)).U32(offset).U32(written).U32(Number(errnum));
}

// --- Names ---------------------------------------------------------------------------------------------

void MakeLink(FileSystem& files, AnswerWriter& answer, const std::string& path, const std::string& target) {
    answer.U32(Number(files.MakeLink(path, target)));
}

void ReadLink(FileSystem& files, AnswerWriter& answer, const std::string& path) {
    std::string target;
    const Errnum errnum = files.ReadLink(path, target);
    answer.U32(Number(errnum)).Text(target);
}

void Unlink(FileSystem& files, AnswerWriter& answer, const std::string& path) {
    answer.U32(Number(files.Unlink(path)));
}

void MakeFolder(FileSystem& files, AnswerWriter& answer, uint16_t mode, const std::string& path) {
    answer.U32(Number(files.MakeFolder(path, mode)));
}

void RemoveFolder(FileSystem& files, AnswerWriter& answer, const std::string& path) {
    answer.U32(Number(files.RemoveFolder(path)));
}

void Rename(FileSystem& files, AnswerWriter& answer, const std::string& oldPath, const std::string& newPath) {
    answer.U32(Number(files.Rename(oldPath, newPath)));
}

void Stat(FileSystem& files, AnswerWriter& answer, const std::string& path) {
    Status status;
    const Errnum errnum = files.Stat(path, status);
    answer.U32(Number(errnum)).U32(status.mode).U32(status.size).U32(status.linkCount);
    answer.U32(status.times.access).U32(status.times.modification).U32(status.times.change);
}

void ChangeMode(FileSystem& files, AnswerWriter& answer, uint32_t mode, const std::string& path) {
    answer.U32(Number(files.ChangeMode(path, mode)));
}

void Access(FileSystem& files, AnswerWriter& answer, const std::string& path) {
    answer.U32(Number(files.Access(path)));
}

// --- Folders -------------------------------------------------------------------------------------------

void OpenFolder(FileSystem& files, AnswerWriter& answer, const std::string& path) {
    uint32_t handle = 0;
    const Errnum errnum = files.OpenFolder(path, handle);
    answer.U32(handle).U32(Number(errnum));
}

void ReadFolder(FileSystem& files, AnswerWriter& answer, uint32_t handle, uint32_t number) {
    FolderEntry entry;
    const Errnum errnum = files.ReadFolder(handle, number, entry);
    answer.U32(handle).U32(number).U32(Number(errnum)).U32(static_cast<uint32_t>(entry.kind)).U32(entry.mode);
    answer.U32(entry.size).U32(entry.times.access).U32(entry.times.modification).U32(entry.times.change);
    answer.Text(entry.name);
}

void CloseFolder(FileSystem& files, AnswerWriter& answer, uint32_t handle) {
    answer.U32(Number(files.CloseFolder(handle)));
}

// --- The file system
// -----------------------------------------------------------------------------------------

void SpaceOf(FileSystem& files, AnswerWriter& answer, const std::string& path) {
    const SpaceStatus space = files.GetSpace();
    answer.U32(Number(files.Access(path))).U32(kFileSystemId).U32(kFileSystemType).U32(0);
    answer.U32(space.blockSize).U32(space.totalBlocks).U32(space.freeBlocks).U32(space.freeBlocks);
    answer.U32(space.maxFileSize).U32(space.nodes).U32(space.maxNodes);
}

void DeviceInfo(FileSystem& files, AnswerWriter& answer) {
    constexpr uint32_t kPagesPerBlock = 64;
    constexpr uint32_t kPageSize = 512;
    constexpr uint32_t kSpareSize = 16;
    const SpaceStatus space = files.GetSpace();
    const uint64_t bytes = uint64_t{space.totalBlocks} * space.blockSize;
    answer.U32(0).U32(static_cast<uint32_t>(bytes / (kPagesPerBlock * kPageSize)));
    answer.U32(kPagesPerBlock).U32(kPageSize).U32(kPageSize + kSpareSize).U32(0xEC).U32(0x76);
    answer.U8(1).Text("SIMULATED NAND 64MB");
}

/// Query 0 returns the version of the file system (a number), query 1 its name (a text), any other the number
/// 0.
void ExtendedInfo(FileSystem&, AnswerWriter& answer, uint32_t query, uint32_t, uint8_t) {
    if (query == 1)
        answer.U32(1).U32(0).Text("simulated EFS2");
    else
        answer.U32(0).U32(query == 0 ? 2 : 0).U8(0);
}

// --- The table -----------------------------------------------------------------------------------------

using Handler = std::function<bool(FileSystem&, RequestReader&, AnswerWriter&)>;

/// Makes a handler that reads the arguments of `command` from the request, in order. If the request is too
/// short, the handler does nothing and returns false.
template <class... Fields>
Handler Typed(void (*command)(FileSystem&, AnswerWriter&, Fields...)) {
    return [command](FileSystem& files, RequestReader& in, AnswerWriter& answer) {
        std::tuple<std::decay_t<Fields>...> fields;
        std::apply([&in](auto&... field) { (in.Take(field), ...); }, fields);
        if (in.Good())
            std::apply([&](const auto&... field) { command(files, answer, field...); }, fields);
        return in.Good();
    };
}

struct Command {
    uint16_t number;
    size_t answerSize;   // of a response that refuses the request
    size_t errnumOffset; // of its error number
    Handler handler;
};

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {.number = 2, .answerSize = 12, .errnumOffset = 8, .handler = Typed(Open)},
        {.number = 3, .answerSize = 8, .errnumOffset = 4, .handler = Typed(Close)},
        {.number = 4, .answerSize = 20, .errnumOffset = 16, .handler = Typed(Read)},
        {.number = 5, .answerSize = 20, .errnumOffset = 16, .handler = Typed(Write)},
        {.number = 6, .answerSize = 8, .errnumOffset = 4, .handler = Typed(MakeLink)},
        {.number = 7, .answerSize = 9, .errnumOffset = 4, .handler = Typed(ReadLink)},
        {.number = 8, .answerSize = 8, .errnumOffset = 4, .handler = Typed(Unlink)},
        {.number = 9, .answerSize = 8, .errnumOffset = 4, .handler = Typed(MakeFolder)},
        {.number = 10, .answerSize = 8, .errnumOffset = 4, .handler = Typed(RemoveFolder)},
        {.number = 11, .answerSize = 12, .errnumOffset = 8, .handler = Typed(OpenFolder)},
        {.number = 12, .answerSize = 41, .errnumOffset = 12, .handler = Typed(ReadFolder)},
        {.number = 13, .answerSize = 8, .errnumOffset = 4, .handler = Typed(CloseFolder)},
        {.number = 14, .answerSize = 8, .errnumOffset = 4, .handler = Typed(Rename)},
        {.number = 15, .answerSize = 32, .errnumOffset = 4, .handler = Typed(Stat)},
        {.number = 18, .answerSize = 8, .errnumOffset = 4, .handler = Typed(ChangeMode)},
        {.number = 19, .answerSize = 48, .errnumOffset = 4, .handler = Typed(SpaceOf)},
        {.number = 20, .answerSize = 8, .errnumOffset = 4, .handler = Typed(Access)},
        {.number = 21, .answerSize = 34, .errnumOffset = 4, .handler = Typed(DeviceInfo)},
        {.number = 29, .answerSize = 13, .errnumOffset = 4, .handler = Typed(ExtendedInfo)},
    };
    return commands;
}

const Command* FindCommand(const Bytes& request) {
    if (request.size() < kHeaderSize || request[0] != kSubsystemCommand || request[1] != kFileSubsystem)
        return nullptr;
    const int number = request[2] | request[3] << 8;
    const auto found = std::find_if(Commands().begin(), Commands().end(),
                                    [number](const Command& command) { return command.number == number; });
    return found == Commands().end() ? nullptr : &*found;
}

Bytes Header(const Bytes& request) {
    return {request.begin(), request.begin() + kHeaderSize};
}

Bytes Refused(ProtocolError error, const Bytes& request) {
    return ProtocolErrorAnswer(static_cast<uint8_t>(error), request);
}

} // namespace

Bytes FileSystemAnswer(const Bytes& request, FileSystem& files) {
    if (request.size() < kHeaderSize)
        return Refused(ProtocolError::BadLength, request);
    const Command* command = FindCommand(request);
    if (command == nullptr)
        return Refused(ProtocolError::BadCommand, request);
    RequestReader in(request, kHeaderSize);
    AnswerWriter answer(Header(request));
    return command->handler(files, in, answer) ? answer.Result() : Refused(ProtocolError::BadLength, request);
}

Bytes FileSystemRefusal(const Bytes& request, uint32_t errnum) {
    const Command* command = FindCommand(request);
    if (command == nullptr)
        return Refused(ProtocolError::BadCommand, request);
    Bytes answer = Header(request);
    answer.resize(command->answerSize);
    for (size_t i = 0; i < sizeof errnum; ++i)
        answer[command->errnumOffset + i] = static_cast<uint8_t>(errnum >> (8 * i));
    return answer;
}

} // namespace handset
