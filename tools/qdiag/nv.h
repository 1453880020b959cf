// What the NV commands share.
#pragma once

#include <array>
#include <string>

#include "qdiag/phone.h"

namespace tools::qdiag {

/// The bytes of an item, padded with zeros.
using NvValue = std::array<unsigned char, NvItems::kItemSize>;

/// The phone's response to the request for an item.
struct NvResponse {
    bool isAnswered = false;
    unsigned short status = 0; // 0: `value` is valid
    NvValue value{};
};

/// Requests an item from the phone.
NvResponse ReadNvItem(const Phone& phone, unsigned short item);

/// Returns the name of an item in messages: "NV item 71".
std::string ItemName(unsigned short item);

/// Parses an item number. Throws Failure (wrong usage) for any other text.
unsigned short ParseItem(const std::string& text);

/// Throws Failure when the phone no longer answers; its text says that `what` failed.
void RequireAnsweringPhone(const Phone& phone, const std::string& what);

} // namespace tools::qdiag
