// Facts about a phone, as commands print them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace tools::qdiag {

/// Facts are what the phone reported about one thing, in the order in which they were added, and the reasons
/// why others are missing. Keys are JSON keys; people see them with blanks instead of '_'.
class Facts {
public:
    void Text(const char* key, const std::string& text);
    void Number(const char* key, uint64_t number);
    /// Records a fact that is shown to people as `printed`, and is the value `json` in JSON.
    void Add(const char* key, const std::string& printed, const std::string& json);
    /// Records facts that the phone did not report, and the reason; it is empty when another call has it.
    void Missing(std::initializer_list<const char*> keys, const std::string& reason);

    /// Returns one line for each fact.
    std::string AsText() const;
    /// Returns a JSON object, with no line feed at its end.
    std::string AsJson() const;
    void Print(bool isJson) const;
    /// Returns the reasons of all missing facts; empty when none is missing.
    const std::string& Reasons() const { return m_reasons; }

private:
    struct Fact {
        const char* key;
        std::string printed;
        std::string json;
    };

    std::vector<Fact> m_facts;
    std::string m_reasons;
};

} // namespace tools::qdiag
