// Failures of a command that works on several things and goes on after one that fails.
#pragma once

#include <cstddef>
#include <string>

namespace tools::wfxhost {

/// Problems prints the reason of each failure on standard error, and remembers that there was one.
class Problems {
public:
    /// `lead` comes before each reason: "not deleted". With `isOnlyOne` there is nothing to go on with, and
    /// Add throws the reason as a Failure.
    Problems(const char* lead, bool isOnlyOne) : m_lead(lead), m_isOnlyOne(isOnlyOne) {}

    void Add(const std::string& reason);
    size_t Count() const { return m_count; }
    /// Finish throws `summary` as a Failure when there was a problem.
    void Finish(const std::string& summary) const;

private:
    const char* const m_lead;
    const bool m_isOnlyOne;
    size_t m_count = 0;
};

} // namespace tools::wfxhost
