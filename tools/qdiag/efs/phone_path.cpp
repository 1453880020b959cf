#include "qdiag/efs/phone_path.h"

#include <algorithm>

#include "common/failure.h"
#include "common/text.h"

namespace tools::qdiag {

std::string ParsePhonePath(const std::string& text) {
    std::string path;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find('/', begin), text.size());
        const std::string name = text.substr(begin, end - begin);
        if (name == "..")
            throw Failure(Quoted(text) + " has \"..\" in it; write the path without", Status::Usage);
        if (!name.empty() && name != ".")
            path += "/" + name;
        begin = end + 1;
    }
    return path.empty() ? "/" : path;
}

std::string ChildOf(const std::string& folder, const std::string& name) {
    return (folder == "/" ? "" : folder) + "/" + name;
}

} // namespace tools::qdiag
