#include "qdiag/efs/space.h"

#include "qdiag/commands.h"

namespace tools::qdiag {

void AddSpace(const Phone& phone, Facts& facts, bool withKind) {
    DWORD error = 0;
    DWORD id = 0;
    DWORD type = 0;
    DWORD blockSize = 0;
    DWORD total = 0;
    DWORD available = 0;
    DWORD free = 0;
    DWORD maxFileSize = 0;
    DWORD files = 0;
    DWORD maxFiles = 0;
    const bool isAnswered = phone->EFS2_DIAG_STATFS("/", error, id, type, blockSize, total, available, free,
                                                    maxFileSize, files, maxFiles);
    if (!isAnswered || error != 0) {
        if (withKind)
            facts.Missing({"id", "type"}, "");
        return facts.Missing({"block_size", "total_bytes", "available_bytes", "free_bytes", "max_file_size",
                              "files", "max_files"},
                             isAnswered
                                 ? "the phone refused to report its file-system figures (error number " +
                                       std::to_string(error) + ")"
                                 : phone.NoResponse("the file-system figures").what());
    }
    if (withKind) {
        facts.Number("id", id);
        facts.Number("type", type);
    }
    facts.Number("block_size", blockSize);
    facts.Number("total_bytes", uint64_t{blockSize} * total);
    facts.Number("available_bytes", uint64_t{blockSize} * available);
    facts.Number("free_bytes", uint64_t{blockSize} * free);
    facts.Number("max_file_size", maxFileSize);
    facts.Number("files", files);
    facts.Number("max_files", maxFiles);
}

void EfsDfCommand(const Job& job) {
    const Phone phone(job);
    Facts facts;
    AddSpace(phone, facts, true);
    facts.Print(job.Has("--json"));
    if (!facts.Reasons().empty())
        throw Failure(facts.Reasons());
}

} // namespace tools::qdiag
