// The simulated handset's non-volatile items.
#pragma once

#include <map>

#include "handset/bytes.h"

namespace handset {

/// The status in responses to NV item requests.
enum class NvStatus : uint16_t { Done = 0, NotActive = 5, BadParameter = 6, ReadOnly = 7 };

/// An item has one value, an array item one per index. A value has up to 128 bytes, in an array 127.
struct NvItem {
    std::map<uint8_t, Bytes> values; // by index; a plain item's value has index 0
    bool isArray = false;
    bool isReadOnly = false;
};

/// A missing item is not active. Writing makes it a plain item. No lock of its own.
class NvItems {
public:
    static constexpr size_t kSize = 128;

    NvItems();

    /// `data` is the content of the item's 128-byte field. For an array item its first byte is the index,
    /// also as an argument of Read.
    NvStatus Read(uint16_t id, Bytes& data) const;
    NvStatus Write(uint16_t id, const Bytes& data);

    std::map<uint16_t, NvItem> items;
};

} // namespace handset
