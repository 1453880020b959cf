// The failures of a command that works on several entries and continues after one fails.
#pragma once

#include <cstddef>
#include <string>

namespace tools::wfxhost {

/// Problems prints the reason of each failure on standard error and counts the failures.
class Problems {
public:
    /// `lead` precedes each reason: "not deleted". If `isOnlyOne` is set, nothing can continue, and Add
    /// throws the reason as a Failure.
    Problems(const char* lead, bool isOnlyOne) : m_lead(lead), m_isOnlyOne(isOnlyOne) {}

    void Add(const std::string& reason);
    size_t Count() const { return m_count; }
    /// Throws `summary` as a Failure if there was a problem.
    void Finish(const std::string& summary) const;

private:
    const char* const m_lead;
    const bool m_isOnlyOne;
    size_t m_count = 0;
};

} // namespace tools::wfxhost
