#include "wfxhost/phone_path.h"

#include <algorithm>

namespace tools::wfxhost {

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

} // namespace tools::wfxhost
