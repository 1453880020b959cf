// The nv restore command: writes NV items from a file to the phone.
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <span>

#include "common/interrupt.h"
#include "common/progress.h"
#include "common/text.h"
#include "qdiag/commands.h"
#include "qdiag/hex.h"
#include "qdiag/nv_file.h"

namespace tools::qdiag {
namespace {

/// An item whose value on the phone differs from the file's, or which the phone refuses to read.
struct Difference {
    unsigned short item;
    NvValue wanted;
    NvResponse onPhone;
};

/// The result of the batch commands.
struct BatchResult {
    bool isDone = false;
    unsigned short lastItem = 0xFFFF;
    unsigned char lastStatus = 0;
};

/// Returns the value in hex without trailing zeros.
std::string ValueText(const NvValue& value) {
    size_t size = value.size();
    while (size > 1 && value[size - 1] == 0)
        --size;
    return HexText(std::span(value).first(size), " ");
}

std::vector<Difference> Compare(const Phone& phone, const std::map<unsigned short, NvValue>& items) {
    std::vector<Difference> differences;
    Progress progress("comparing");
    size_t done = 0;
    for (const auto& [item, wanted] : items) {
        const NvResponse response = ReadNvItem(phone, item);
        if (!response.isAnswered)
            throw Failure(std::string(phone.NoResponse(ItemName(item)).what()) + "; nothing was written");
        if (response.status != 0 || response.value != wanted)
            differences.push_back({item, wanted, response});
        progress.ReportSteps(++done, items.size());
    }
    return differences;
}

void Show(const std::vector<Difference>& differences) {
    for (const Difference& difference : differences) {
        const NvResponse& response = difference.onPhone;
        const std::string held = response.status == 0
                                     ? ValueText(response.value)
                                     : "(refused, status " + std::to_string(response.status) + ")";
        std::printf("%s\n  handset  %s\n  file     %s\n", ItemName(difference.item).c_str(), held.c_str(),
                    ValueText(difference.wanted).c_str());
    }
}

void RequireConsent() {
    std::printf("Write them to the phone? [y/N] ");
    std::fflush(stdout);
    std::string reply;
    std::getline(std::cin, reply);
    if (reply != "y" && reply != "Y" && reply != "yes")
        throw Failure("not confirmed: nothing was written");
}

BatchResult Write(const Phone& phone, const std::vector<Difference>& differences,
                  const std::vector<unsigned short>& readOnly) {
    phone->DIAG_NV_WRITE_BatchQueue_SetRO_List(readOnly.data(), static_cast<unsigned short>(readOnly.size()));
    phone->DIAG_NV_WRITE_SetBatchMode(true);
    unsigned short status = 0;
    for (const Difference& difference : differences)
        phone->DIAG_NV_WRITE_F(difference.item, difference.wanted.data(),
                               static_cast<int>(difference.wanted.size()), status);
    BatchResult result;
    unsigned short batchStatus = 0;
    result.isDone = phone->DIAG_NV_WRITE_FlushBatchQueue(result.lastItem, batchStatus, result.lastStatus);
    return result;
}

std::string WhyNot(const BatchResult& result) {
    if (result.isDone)
        return "";
    if (result.lastStatus != 0)
        return "the phone refused to write " + ItemName(result.lastItem) + " (status " +
               std::to_string(result.lastStatus) + (result.lastStatus == 7 ? ", read-only)" : ")");
    return "the phone did not answer a batch request";
}

/// Reads every item back, because the status of a batch does not prove what the phone holds. Returns the
/// number of items that do not hold the file's value; items in `mayStay` do not count.
size_t CountWrong(const Phone& phone, const std::vector<Difference>& differences,
                  const std::vector<unsigned short>& mayStay) {
    size_t wrong = 0;
    for (const Difference& difference : differences) {
        const NvResponse response = ReadNvItem(phone, difference.item);
        if (!response.isAnswered)
            RequireAnsweringPhone(phone, "the values of the items are unknown; the restore");
        if (response.isAnswered && response.status == 0 && response.value == difference.wanted)
            continue;
        const bool isAllowed = std::ranges::find(mayStay, difference.item) != mayStay.end();
        const char* state = response.isAnswered ? "does NOT hold the file's value" : "cannot be read back";
        std::printf("%s %s\n", ItemName(difference.item).c_str(),
                    isAllowed ? "may be read-only and stays as it is" : state);
        wrong += isAllowed ? 0 : 1;
    }
    return wrong;
}

} // namespace

void NvRestoreCommand(const Job& job) {
    const std::vector<unsigned short> readOnly = job.Numbers("--read-only");
    const std::map<unsigned short, NvValue> items = ReadNvFile(job.arguments[0]);
    const Phone phone(job);
    const std::vector<Difference> differences = Compare(phone, items);
    if (differences.empty()) {
        std::printf("the phone holds all %zu items of the file already\n", items.size());
        return;
    }
    Show(differences);
    std::printf("%zu of %zu items differ\n", differences.size(), items.size());
    if (!job.Has("--yes"))
        RequireConsent();
    const InterruptGuard guard; // a restore that has begun runs to its end
    const std::string problem = WhyNot(Write(phone, differences, readOnly));
    const size_t wrong = CountWrong(phone, differences, readOnly);
    if (wrong > 0 || !problem.empty())
        throw Failure(std::to_string(wrong) + " of " + std::to_string(differences.size()) +
                      " items were not restored" + (problem.empty() ? "" : ": ") + problem);
    std::printf("restored and read back\n");
}

} // namespace tools::qdiag
