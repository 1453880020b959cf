// The simulated handset's memory.
#pragma once

#include <map>

#include "handset/bytes.h"

namespace handset {

/// Bytes never written are 0. No lock of its own.
class Memory {
public:
    void Write(uint32_t address, const Bytes& data);
    Bytes Read(uint32_t address, size_t count) const;

private:
    std::map<uint32_t, uint8_t> m_bytes;
};

} // namespace handset
