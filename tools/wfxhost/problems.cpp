#include "wfxhost/problems.h"

#include <cstdio>

#include "common/failure.h"

namespace tools::wfxhost {

void Problems::Add(const std::string& reason) {
    if (m_isOnlyOne)
        throw Failure(reason);
    std::fprintf(stderr, "%s: %s\n", m_lead, reason.c_str());
    ++m_count;
}

void Problems::Finish(const std::string& summary) const {
    if (m_count > 0)
        throw Failure(summary);
}

} // namespace tools::wfxhost
