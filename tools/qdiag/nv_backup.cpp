// The nv backup command: copies NV items from the phone into a file.
#include <cstdio>
#include <filesystem>

#include "common/interrupt.h"
#include "common/local_path.h"
#include "common/progress.h"
#include "common/text.h"
#include "qdiag/commands.h"
#include "qdiag/nv_file.h"

namespace tools::qdiag {
namespace {

struct Range {
    unsigned short first = 0;
    unsigned short last = 0xFFFF;
};

Range ParseRange(const Job& job) {
    if (!job.Has("--items"))
        return {};
    const std::string text = job.Value("--items");
    const size_t dash = text.find('-');
    const Range range = {ParseItem(text.substr(0, dash)),
                         ParseItem(dash == std::string::npos ? text : text.substr(dash + 1))};
    if (range.first > range.last)
        throw Failure("--items: the range ends before it begins", Status::Usage);
    return range;
}

std::string Title(const Phone& phone, const Range& range) {
    DWORD hardware = 0;
    DWORD model = 0;
    char software[PhoneIdentity::kBuildTextSize] = "";
    char modelName[PhoneIdentity::kBuildTextSize] = "";
    phone->DIAG_EXT_BUILD_ID_F(hardware, model, software, modelName);
    return "NV items " + std::to_string(range.first) + " to " + std::to_string(range.last) + " of " +
           modelName + ", software " + software;
}

/// How many items of a range were saved, refused and left unanswered.
struct Counts {
    size_t kept = 0;
    size_t refused = 0;
    size_t unanswered = 0;
    unsigned short firstUnanswered = 0;
};

Counts CopyItems(const Phone& phone, const Range& range, NvFileWriter& file) {
    const size_t total = size_t{range.last} - range.first + 1;
    Counts counts;
    Progress progress("reading");
    for (size_t done = 0; done < total; ++done) {
        if (Interrupted())
            throw Failure("interrupted: no backup was written");
        const auto item = static_cast<unsigned short>(range.first + done);
        const NvResponse response = ReadNvItem(phone, item);
        if (!response.isAnswered) {
            RequireAnsweringPhone(phone, "the backup");
            file.AddComment("no response to the request for item " + std::to_string(item));
            if (counts.unanswered++ == 0)
                counts.firstUnanswered = item;
        } else if (response.status != 0) {
            ++counts.refused;
        } else {
            file.Add(item, response.value);
            ++counts.kept;
        }
        progress.ReportSteps(done + 1, total);
    }
    return counts;
}

} // namespace

void NvBackupCommand(const Job& job) {
    const std::string& path = job.arguments[0];
    const Range range = ParseRange(job);
    if (std::filesystem::exists(LocalPath(path)) && !job.Has("--force"))
        throw Failure(Quoted(path) + " already exists; --force replaces it");
    const Phone phone(job);
    const InterruptGuard guard;
    NvFileWriter file(path, Title(phone, range));
    const Counts counts = CopyItems(phone, range, file);
    file.Finish();
    std::printf("%zu items kept in %s; %zu are not on the phone or cannot be read\n", counts.kept,
                Printable(path).c_str(), counts.refused);
    if (counts.unanswered > 0)
        throw Failure("the backup lacks " + std::to_string(counts.unanswered) +
                      " items because the phone did not answer the requests for them; the first is item " +
                      std::to_string(counts.firstUnanswered));
}

} // namespace tools::qdiag
