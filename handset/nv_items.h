// The simulated handset's non-volatile items.
#pragma once

#include <map>

#include "handset/bytes.h"

namespace handset {

/// How the handset takes or refuses an item.
enum class NvStatus : uint16_t { Done = 0, NotActive = 5, BadParameter = 6, ReadOnly = 7 };

/// An item: one value, or, as an array, one per index. Values have up to 128 bytes (127 in an array).
struct NvItem {
    std::map<uint8_t, Bytes> values; // by index; a plain item's value has index 0
    bool isArray = false;
    bool isReadOnly = false;
};

/// Items that are not there are not active; writing one makes it, plain. No lock of its own.
class NvItems {
public:
    static constexpr size_t kSize = 128;

    NvItems();

    /// What the item's 128 bytes hold; an array's begin with the index, which is looked at on reading and
    /// writing.
    NvStatus Read(uint16_t id, Bytes& data) const;
    NvStatus Write(uint16_t id, const Bytes& data);

    std::map<uint16_t, NvItem> items;
};

} // namespace handset
