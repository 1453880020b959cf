// Component automation on a thread.
#pragma once

/// While a ComApartment lives, the thread that made it may use automation objects (Windows: COM, in a
/// single-threaded apartment). Nothing elsewhere. It is destroyed on the thread that made it.
class ComApartment {
public:
    ComApartment();
    ~ComApartment();
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    const bool m_bToEnd;
};
