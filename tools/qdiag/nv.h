// NV items as the commands handle them.
#pragma once

#include <array>
#include <string>

#include "qdiag/phone.h"

namespace tools::qdiag {

/// The bytes of an item; shorter items are filled up with zeros.
using NvValue = std::array<unsigned char, NvItems::kItemSize>;

/// What the phone said when it was asked for an item.
struct NvAnswer {
    bool isAnswered = false;
    unsigned short status = 0; // 0: the value is there
    NvValue value{};
};

/// ReadNvItem asks the phone for an item.
NvAnswer ReadNvItem(const Phone& phone, unsigned short item);

/// ItemName gives "NV item 71".
std::string ItemName(unsigned short item);

/// ParseItem reads an item's number. Throws Failure (wrong usage).
unsigned short ParseItem(const std::string& text);

/// RequireAnswers throws when the phone does not answer any more, with `what` failed on the way.
void RequireAnswers(const Phone& phone, const std::string& what);

} // namespace tools::qdiag
