// The fuzzer's bytes, read in order.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <string>

/// Input reads values from the fuzzer's bytes. After the end numbers are 0 and texts are empty.
class Input {
public:
    Input(const uint8_t* pData, size_t iSize) : m_rest(pData, iSize) {}

    bool IsEmpty() const { return m_rest.empty(); }

    std::span<const uint8_t> Bytes(size_t iLimit = SIZE_MAX) {
        const auto bytes = m_rest.first(std::min(iLimit, m_rest.size()));
        m_rest = m_rest.subspan(bytes.size());
        return bytes;
    }
    /// A number or a record of numbers, in memory byte order.
    template <class T>
    T Value() {
        T value{};
        const auto bytes = Bytes(sizeof value);
        std::copy(bytes.begin(), bytes.end(), reinterpret_cast<uint8_t*>(&value));
        return value;
    }
    uint8_t Byte() { return Value<uint8_t>(); }
    /// A number of bytes or items: every small number is possible, and some large ones.
    size_t Count() {
        const size_t iCode = Byte();
        return iCode < 192 ? iCode : (iCode - 191) * 80;
    }
    std::string Text() {
        const auto bytes = Bytes(Count());
        return {bytes.begin(), std::find(bytes.begin(), bytes.end(), 0)};
    }

private:
    std::span<const uint8_t> m_rest;
};

/// Exactly iItems zeros on the heap, so that the sanitizer sees every write past the end.
template <class T>
std::unique_ptr<T[]> Area(size_t iItems) {
    return std::make_unique<T[]>(iItems);
}

/// Require stops the fuzzer unless bHolds.
inline void Require(bool bHolds) {
    if (!bHolds)
        abort();
}
