// A record of what a handset received.
#pragma once

#include <cstddef>
#include <deque>
#include <limits>

#include "handset/bytes.h"

namespace handset {

/// No lock of its own.
class Record {
public:
    void AddWire(const uint8_t* data, size_t size);
    void AddRequest(const Bytes& request);
    void Clear();
    /// Keeps only the newest `requests` requests, and no wire bytes.
    void SetLimit(size_t requests);

    std::vector<Bytes> Requests() const { return {m_requests.begin(), m_requests.end()}; }
    const Bytes& Wire() const { return m_wire; }
    /// The number of requests since Clear, including those no longer kept.
    size_t Count() const { return m_count; }

private:
    static constexpr size_t kNoLimit = std::numeric_limits<size_t>::max();

    std::deque<Bytes> m_requests;
    Bytes m_wire;
    size_t m_count = 0;
    size_t m_limit = kNoLimit;
};

} // namespace handset
