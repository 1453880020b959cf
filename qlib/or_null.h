// Creating objects when that may fail.
#pragma once

/// OrNull creates an object with `make`, which returns a unique_ptr, and passes its ownership to the caller.
/// Null when that throws anything.
template <class Make>
auto OrNull(Make make) -> decltype(make().release()) {
    try {
        return make().release();
    } catch (...) {
        return nullptr;
    }
}
