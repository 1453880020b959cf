#include "wfxhost/streams.h"

#include <cstdio>
#include <fstream>
#include <vector>

#include "common/interrupt.h"
#include "wfxhost/copy.h"
#include "wfxhost/system.h"
#include "wfxhost/temporary.h"

namespace tools::wfxhost {
namespace {

constexpr size_t kPiece = 65536;

void SaveInput(const std::filesystem::path& file) {
    std::ofstream stream(file, std::ios::binary);
    std::vector<char> piece(kPiece);
    long count = 0;
    while ((count = ReadInput(piece.data(), piece.size())) > 0)
        stream.write(piece.data(), count);
    if (Interrupted())
        throw Failure("interrupted: nothing was copied");
    if (count < 0)
        throw Failure("standard input cannot be read");
    stream.close();
    if (!stream)
        throw Failure("cannot write a temporary file; perhaps the disk is full");
}

void Print(std::ifstream& stream) {
    MakeOutputBinary();
    std::vector<char> piece(kPiece);
    while (stream.read(piece.data(), static_cast<std::streamsize>(piece.size())), stream.gcount() > 0) {
        const auto count = static_cast<size_t>(stream.gcount());
        if (Interrupted())
            throw Failure("interrupted: not everything was printed");
        if (std::fwrite(piece.data(), 1, count, stdout) != count)
            throw Failure(kOutputFailure);
    }
    if (std::fflush(stdout) != 0)
        throw Failure(kOutputFailure);
}

} // namespace

void PrintFile(Session& session, const PhonePath& path, const Entry& entry) {
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.File("file");
    {
        const InterruptGuard guard;
        const CopyResult result = TryGet(session, path, entry, file, false, [](int) {});
        if (!result.isDone)
            throw Failure(result.remark);
    }
    std::ifstream stream(file, std::ios::binary);
    // The file is removed before it is printed if the system allows it, because Ctrl-C may end the program
    // then.
    std::error_code error;
    std::filesystem::remove(file, error);
    Print(stream);
}

void PutInput(Session& session, const PhonePath& path, const CopyOptions& options) {
    const InterruptGuard guard;
    const TemporaryFolder folder;
    SaveInput(folder.File("input"));
    Tree tree;
    Entry entry;
    std::error_code error;
    entry.size = std::filesystem::file_size(folder.File("input"), error);
    tree.Add({path, folder.File("input"), entry});
    CopyToPhone(session, tree, options);
}

} // namespace tools::wfxhost
