// A record of what a handset received.
#include "handset/record.h"

namespace handset {

void Record::AddWire(const uint8_t* data, size_t size) {
    if (m_limit == kNoLimit)
        m_wire.insert(m_wire.end(), data, data + size);
}

void Record::AddRequest(const Bytes& request) {
    ++m_count;
    m_requests.push_back(request);
    if (m_requests.size() > m_limit)
        m_requests.pop_front();
}

void Record::Clear() {
    m_requests.clear();
    m_wire.clear();
    m_count = 0;
}

void Record::SetLimit(size_t requests) {
    m_limit = requests;
    m_wire.clear();
    while (m_requests.size() > m_limit)
        m_requests.pop_front();
}

} // namespace handset
