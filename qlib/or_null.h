// Objects that may fail to come into being.
#pragma once

/// OrNull makes an object with `make`, which returns a unique_ptr, and gives it to the caller; null when that
/// throws anything.
template <class Make>
auto OrNull(Make make) -> decltype(make().release()) {
    try {
        return make().release();
    } catch (...) {
        return nullptr;
    }
}
