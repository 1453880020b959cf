#include "wfxhost/find_expression.h"

#include <cstring>

#include "common/pattern.h"

namespace tools::wfxhost {
namespace {

std::optional<std::string> OptionalValue(const Job& job, const char* option) {
    return job.Has(option) ? std::optional(job.Value(option)) : std::nullopt;
}

} // namespace

FindExpression::FindExpression(const Job& job)
    : m_name(OptionalValue(job, "-name")), m_anyCaseName(OptionalValue(job, "-iname")) {
    if (job.Has("-type")) {
        const std::string type = job.Value("-type");
        if (type != "f" && type != "d")
            throw Failure("-type: f means files, d means folders", Status::Usage);
        m_isFolder = type == "d";
    }
    if (job.Has("-size"))
        ReadSize(job.Value("-size"));
}

void FindExpression::ReadSize(const std::string& text) {
    constexpr const char* kUnits = "ckMG";
    constexpr uint64_t kUnitSizes[] = {1, 1024, 1024 * 1024, 1024 * 1024 * 1024};
    const bool hasSign = text.starts_with('+') || text.starts_with('-');
    m_compare = text.starts_with('+') ? Compare::More : hasSign ? Compare::Less : Compare::Equal;
    std::string number = text.substr(hasSign ? 1 : 0);
    m_unit = 1;
    if (const char* unit = number.empty() ? nullptr : std::strchr(kUnits, number.back())) {
        m_unit = kUnitSizes[unit - kUnits];
        number.pop_back();
    }
    m_size = ParseNumber(number, 0xFFFFFFFF, "-size");
}

bool FindExpression::Matches(const std::string& name, const Entry& entry) const {
    if ((m_name && !tools::Matches(*m_name, name)) ||
        (m_anyCaseName && !tools::Matches(*m_anyCaseName, name, true)))
        return false;
    if (m_isFolder && *m_isFolder != entry.isFolder)
        return false;
    if (m_unit == 0)
        return true;
    if (entry.isFolder)
        return false;
    const uint64_t size = entry.size / m_unit + (entry.size % m_unit != 0 ? 1 : 0);
    return m_compare == Compare::Equal  ? size == m_size
           : m_compare == Compare::More ? size > m_size
                                        : size < m_size;
}

} // namespace tools::wfxhost
