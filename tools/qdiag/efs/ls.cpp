// The efs ls command: prints the names in a folder.
#include <algorithm>
#include <cstdio>

#include "common/text.h"
#include "qdiag/commands.h"
#include "qdiag/efs/phone_files.h"
#include "qdiag/efs/phone_path.h"

namespace tools::qdiag {

void EfsLsCommand(const Job& job) {
    const std::string folder = job.arguments.empty() ? "/" : ParsePhonePath(job.arguments[0]);
    const Phone phone(job);
    std::vector<PhoneEntry> entries;
    const Outcome outcome = PhoneFiles(phone).List(folder, entries);
    if (!outcome.IsGranted())
        throw Failure(Quoted(folder) + ": " + outcome.reason);
    std::ranges::sort(entries, {}, &PhoneEntry::name);
    const bool isZeroed = job.Has("--zero");
    for (const PhoneEntry& entry : entries) {
        const bool isMarked = job.Has("--mark-folders") && entry.kind == Kind::Folder;
        const std::string text = (isZeroed ? entry.name : Printable(entry.name)) + (isMarked ? "/" : "");
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fputc(isZeroed ? '\0' : '\n', stdout);
    }
}

} // namespace tools::qdiag
