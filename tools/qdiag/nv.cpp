// The nv read and nv write commands.
#include "qdiag/nv.h"

#include <algorithm>
#include <cstdio>
#include <span>

#include "common/text.h"
#include "qdiag/commands.h"
#include "qdiag/hex.h"

namespace tools::qdiag {
namespace {

constexpr unsigned short kReadOnly = 7;

} // namespace

NvResponse ReadNvItem(const Phone& phone, unsigned short item) {
    NvResponse response;
    response.isAnswered = phone->DIAG_NV_READ_F(item, response.value.data(),
                                                static_cast<int>(response.value.size()), response.status);
    return response;
}

std::string ItemName(unsigned short item) {
    return "NV item " + std::to_string(item);
}

unsigned short ParseItem(const std::string& text) {
    return static_cast<unsigned short>(ParseNumber(text, 0xFFFF, "NV item"));
}

void RequireAnsweringPhone(const Phone& phone, const std::string& what) {
    if (!phone.Answers())
        throw Failure("the handset stopped answering; " + what + " failed");
}

void NvReadCommand(const Job& job) {
    const unsigned short item = ParseItem(job.arguments[0]);
    const size_t length = job.arguments.size() < 2
                              ? NvItems::kItemSize
                              : ParseNumber(job.arguments[1], NvItems::kItemSize, "length");
    const Phone phone(job);
    const NvResponse response = ReadNvItem(phone, item);
    if (!response.isAnswered)
        throw phone.NoResponse(ItemName(item));
    if (response.status != 0)
        throw Failure("the phone refuses to read " + ItemName(item) + " (status " +
                      std::to_string(response.status) + ")");
    std::printf("%s\n", HexText(std::span(response.value).first(length)).c_str());
}

void NvWriteCommand(const Job& job) {
    const unsigned short item = ParseItem(job.arguments[0]);
    const std::optional<Bytes> bytes = ParseHex(job.arguments[1]);
    if (!bytes || bytes->empty() || bytes->size() > NvItems::kItemSize)
        throw Failure(Quoted(job.arguments[1]) + " is not 1 to 128 bytes in hex", Status::Usage);
    const Phone phone(job);
    unsigned short status = 0;
    if (!phone->DIAG_NV_WRITE_F(item, bytes->data(), static_cast<int>(bytes->size()), status))
        throw phone.NoResponse("writing " + ItemName(item));
    if (status != 0)
        throw Failure("the phone refused to write " + ItemName(item) + " (status " + std::to_string(status) +
                      (status == kReadOnly ? ", read-only)" : ")"));
    std::printf("%s written: %zu bytes, then zeros\n", ItemName(item).c_str(), bytes->size());
}

} // namespace tools::qdiag
