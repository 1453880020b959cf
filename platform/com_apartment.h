// Component automation on a thread.
#pragma once

/// A ComApartment lets the thread that made it use automation objects (on Windows: COM, in a single-threaded
/// apartment) until it is destroyed, on the same thread. No effect on Linux.
class ComApartment {
public:
    ComApartment();
    ~ComApartment();
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    const bool m_bToEnd;
};
