// The conditions of the find command.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "common/program.h"
#include "wfxhost/listing.h"

namespace tools::wfxhost {

/// FindExpression holds the conditions of a find command, all of which an entry has to meet.
class FindExpression {
public:
    /// Throws Failure (wrong usage) for an invalid value.
    explicit FindExpression(const Job& job);

    bool Matches(const std::string& name, const Entry& entry) const;

private:
    enum class Compare { Equal, More, Less };

    void ReadSize(const std::string& text);

    std::optional<std::string> m_name;
    std::optional<std::string> m_anyCaseName;
    std::optional<bool> m_isFolder;
    uint64_t m_unit = 0; // of the size, in bytes; 0: any size
    uint64_t m_size = 0; // in units
    Compare m_compare = Compare::Equal;
};

} // namespace tools::wfxhost
