#include "qdiag/facts.h"

#include <algorithm>
#include <cstdio>

#include "common/text.h"

namespace tools::qdiag {

void Facts::Text(const char* key, const std::string& text) {
    Add(key, Printable(text), JsonText(text));
}

void Facts::Number(const char* key, uint64_t number) {
    Add(key, std::to_string(number), std::to_string(number));
}

void Facts::Add(const char* key, const std::string& printed, const std::string& json) {
    m_facts.push_back({key, printed, json});
}

void Facts::Missing(std::initializer_list<const char*> keys, const std::string& reason) {
    for (const char* key : keys)
        Add(key, "(not reported)", "null");
    m_reasons += (m_reasons.empty() || reason.empty() ? "" : "; ") + reason;
}

std::string Facts::AsText() const {
    std::string text;
    for (const Fact& fact : m_facts) {
        std::string name = fact.key;
        std::ranges::replace(name, '_', ' ');
        name.resize(22, ' ');
        text += name + fact.printed + "\n";
    }
    return text;
}

std::string Facts::AsJson() const {
    std::string text = "{\n";
    for (const Fact& fact : m_facts)
        text +=
            "  \"" + std::string(fact.key) + "\": " + fact.json + (&fact == &m_facts.back() ? "\n" : ",\n");
    return text + "}";
}

void Facts::Print(bool isJson) const {
    std::printf("%s", (isJson ? AsJson() + "\n" : AsText()).c_str());
}

} // namespace tools::qdiag
