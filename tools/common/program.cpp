#include "common/program.h"

#include <algorithm>
#include <charconv>

#include "common/text.h"

namespace tools {

std::string Job::Value(const std::string& option, const std::string& otherwise) const {
    const auto found = options.find(option);
    return found == options.end() ? otherwise : found->second;
}

unsigned long Job::Number(const std::string& option, unsigned long limit, unsigned long otherwise) const {
    return Has(option) ? ParseNumber(Value(option), limit, option) : otherwise;
}

std::vector<unsigned short> Job::Numbers(const std::string& option) const {
    std::vector<unsigned short> numbers;
    if (!Has(option))
        return numbers;
    const std::string text = Value(option);
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find(',', begin), text.size());
        numbers.push_back(
            static_cast<unsigned short>(ParseNumber(text.substr(begin, end - begin), 0xFFFF, option)));
        begin = end + 1;
    }
    return numbers;
}

unsigned long ParseNumber(const std::string& text, unsigned long limit, const std::string& what) {
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    const char* const begin = text.data() + (isHex ? 2 : 0);
    const char* const end = text.data() + text.size();
    unsigned long number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number, isHex ? 16 : 10);
    if (error != std::errc() || stop != end || number > limit)
        throw Failure(what + ": " + Quoted(text) + " is not a number from 0 to " + std::to_string(limit),
                      Status::Usage);
    return number;
}

const std::vector<Option>& StandardOptions() {
    static const std::vector<Option> options = {
        {"--help", "h", nullptr, "print the help; with a command, the help for that command"},
        {"--version", "V", nullptr, "print the version"},
        {"--man", "", nullptr, "print the manual page, for man -l -"},
        {"--completion", "", nullptr, "print the completion script for bash, to be read with source"},
    };
    return options;
}

} // namespace tools
