#include "wfxhost/phone_path.h"

#include <cstdio>

namespace wfxhost {

PhonePath::PhonePath(const std::string& typed) {
    std::string text;
    size_t begin = 0;
    while (begin <= typed.size()) {
        const size_t end = std::min(typed.find('/', begin), typed.size());
        const std::string part = typed.substr(begin, end - begin);
        if (part == "..")
            text.resize(text.empty() ? 0 : text.rfind('/'));
        else if (!part.empty() && part != ".")
            text += "/" + part;
        begin = end + 1;
    }
    m_namesFolder = text.empty() || typed.ends_with('/');
    if (!text.empty())
        m_text = text;
}

PhonePath PhonePath::Folder() const {
    return PhonePath(m_text.substr(0, m_text.rfind('/') + 1));
}

PhonePath PhonePath::Child(const std::string& name) const {
    return PhonePath(m_text + "/" + name);
}

std::string Printable(const std::string& name) {
    std::string result;
    for (size_t i = 0; i < name.size(); ++i) {
        const auto byte = static_cast<unsigned char>(name[i]);
        const auto next = i + 1 < name.size() ? static_cast<unsigned char>(name[i + 1]) : 0;
        // 0xC2 0x80 to 0xC2 0x9F are the control characters above 0x7F in UTF-8.
        const bool isHighControl = byte == 0xC2 && next >= 0x80 && next < 0xA0;
        char hex[9];
        if (isHighControl)
            std::snprintf(hex, sizeof hex, "\\x%02X\\x%02X", byte, static_cast<unsigned>(next));
        else
            std::snprintf(hex, sizeof hex, "\\x%02X", byte);
        const bool isControl = byte < 0x20 || byte == 0x7F || isHighControl;
        result += isControl ? std::string(hex) : std::string(1, name[i]);
        i += isHighControl;
    }
    return result;
}

} // namespace wfxhost
